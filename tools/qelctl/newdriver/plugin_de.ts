<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name></name>
    <message id="@name@-empty-slot">
        <source></source>
        <translation>Nehmen Sie die Platte aus dem Schacht.</translation>
    </message>
    <message id="@name@-busy">
        <source></source>
        <translation>Das Gerät arbeitet. Warten Sie, bis es fertig ist.</translation>
    </message>
    <message id="@name@-silent">
        <source></source>
        <translation>Das Gerät antwortet nicht. Prüfen Sie, ob es eingeschaltet ist.</translation>
    </message>
    <message id="@name@-no-connection">
        <source></source>
        <translation>Es gibt keine Verbindung zum Gerät. Prüfen Sie, ob es eingeschaltet und angeschlossen ist.</translation>
    </message>
    <message id="@name@-gone">
        <source></source>
        <translation>Die Verbindung zum Gerät ist abgerissen. Prüfen Sie das Kabel.</translation>
    </message>
    <message id="@name@-garbled">
        <source></source>
        <translation>Die Antwort des Geräts ist nicht lesbar. Prüfen Sie das Kabel, dann versuchen Sie es noch einmal.</translation>
    </message>
</context>
</TS>
