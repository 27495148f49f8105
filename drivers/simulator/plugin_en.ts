<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name></name>
    <message id="qelsimulator-action-insert-plate">
        <source></source>
        <translation>Insert a plate into the slot, then confirm.</translation>
    </message>
    <message id="qelsimulator-action-empty-slot">
        <source></source>
        <translation>Take the plate out of the slot, then confirm.</translation>
    </message>
    <message id="qelsimulator-action-check-plate">
        <source></source>
        <translation>Check that the plate lies flat, then confirm.</translation>
    </message>
    <message id="qelsimulator-unplugged">
        <source></source>
        <translation>The simulated instrument is not connected. Connect it and open it again.</translation>
    </message>
    <message id="qelsimulator-in-use">
        <source></source>
        <translation>The simulated instrument is in use. Close it there first.</translation>
    </message>
    <message id="qelsimulator-refused">
        <source></source>
        <translation>The scenario has the simulated instrument refuse this.</translation>
    </message>
    <message id="qelsimulator-scripted">
        <source></source>
        <translation>The scenario has this error happen.</translation>
    </message>
    <message id="qelsimulator-busy">
        <source></source>
        <translation>The simulated instrument is still working. Wait until it has finished.</translation>
    </message>
    <message id="qelsimulator-configuration">
        <source></source>
        <translation>A setting is missing, of the wrong type or out of range. The log names it.</translation>
    </message>
    <message id="qelsimulator-calibrate">
        <source></source>
        <translation>Calibrate the simulated instrument, then measure again.</translation>
    </message>
    <message id="qelsimulator-no-firmware">
        <source></source>
        <translation>The image is not firmware for a simulated instrument.</translation>
    </message>
    <message id="qelsimulator-damaged-firmware">
        <source></source>
        <translation>The firmware image is damaged. Get it again.</translation>
    </message>
    <message id="qelsimulator-empty-firmware">
        <source></source>
        <translation>The firmware image holds no code.</translation>
    </message>
    <message id="qelsimulator-new-protocol">
        <source></source>
        <translation>The simulated instrument speaks a newer protocol. Update its driver.</translation>
    </message>
</context>
</TS>
