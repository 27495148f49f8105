<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name></name>
    <message id="@name@-empty-slot">
        <source></source>
        <translation>Take the plate out of the slot.</translation>
    </message>
    <message id="@name@-busy">
        <source></source>
        <translation>The instrument is at work. Wait until it has finished.</translation>
    </message>
    <message id="@name@-silent">
        <source></source>
        <translation>The instrument does not answer. Check that it is switched on.</translation>
    </message>
    <message id="@name@-no-connection">
        <source></source>
        <translation>There is no connection to the instrument. Check that it is switched on and connected.</translation>
    </message>
    <message id="@name@-gone">
        <source></source>
        <translation>The connection to the instrument is lost. Check the cable.</translation>
    </message>
    <message id="@name@-garbled">
        <source></source>
        <translation>The answer of the instrument cannot be read. Check the cable, then try again.</translation>
    </message>
</context>
</TS>
