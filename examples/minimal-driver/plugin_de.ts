<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name></name>
    <message id="minimal-busy">
        <source></source>
        <translation>Das Thermometer misst noch. Warten Sie, bis es fertig ist.</translation>
    </message>
</context>
</TS>
