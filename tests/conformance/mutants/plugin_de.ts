<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name></name>
    <message id="good-empty-slot">
        <source></source>
        <translation>Nehmen Sie die Platte aus dem Schacht.</translation>
    </message>
    <message id="good-bad-setting">
        <source></source>
        <translation>Das Gerät kennt eine der Einstellungen nicht.</translation>
    </message>
</context>
</TS>
