<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name></name>
    <message id="laboratory-ORIGIN">
        <source></source>
        <translation>From the deep</translation>
    </message>
    <message id="deep-ONLY">
        <source></source>
        <translation>Nowhere else</translation>
    </message>
</context>
</TS>
