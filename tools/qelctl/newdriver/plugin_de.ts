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
</context>
</TS>
