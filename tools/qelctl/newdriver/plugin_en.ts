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
</context>
</TS>
