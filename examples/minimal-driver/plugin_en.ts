<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name></name>
    <message id="minimal-busy">
        <source></source>
        <translation>The thermometer is still measuring. Wait until it has finished.</translation>
    </message>
</context>
</TS>
