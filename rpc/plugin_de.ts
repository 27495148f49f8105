<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name></name>
    <message id="qel-remote-lost">
        <source></source>
        <translation>Die Verbindung zum Treiber ist abgebrochen.</translation>
    </message>
    <message id="qel-remote-server-lost">
        <source></source>
        <translation>Die Verbindung zum Server ist abgebrochen. Was er noch misst, bleibt dort erhalten: siehe „qelctl results“.</translation>
    </message>
    <message id="qel-remote-silent">
        <source></source>
        <translation>Der Treiber antwortet nicht mehr und wurde beendet.</translation>
    </message>
    <message id="qel-remote-away">
        <source></source>
        <translation>Der Treiber ist zurzeit nicht erreichbar.</translation>
    </message>
    <message id="qel-remote-value">
        <source></source>
        <translation>Ein Wert lässt sich nicht übertragen.</translation>
    </message>
</context>
</TS>
