<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name></name>
    <message id="qel-remote-lost">
        <source></source>
        <translation>The connection to the driver was lost.</translation>
    </message>
    <message id="qel-remote-server-lost">
        <source></source>
        <translation>The connection to the server was lost. What it still measures is kept there: see 'qelctl results'.</translation>
    </message>
    <message id="qel-remote-silent">
        <source></source>
        <translation>The driver did not answer any more and was ended.</translation>
    </message>
    <message id="qel-remote-away">
        <source></source>
        <translation>The driver cannot be reached at the moment.</translation>
    </message>
    <message id="qel-remote-value">
        <source></source>
        <translation>A value cannot be transmitted.</translation>
    </message>
</context>
</TS>
