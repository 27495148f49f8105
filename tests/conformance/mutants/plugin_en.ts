<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name></name>
    <message id="good-empty-slot">
        <source></source>
        <translation>Take the plate out of the slot.</translation>
    </message>
    <message id="good-bad-setting">
        <source></source>
        <translation>A setting is not one that the reader knows.</translation>
    </message>
</context>
</TS>
