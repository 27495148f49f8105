<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name></name>
    <message id="qelsimulator-action-insert-plate">
        <source></source>
        <translation>Legen Sie eine Platte in den Schacht ein und bestätigen Sie dann.</translation>
    </message>
    <message id="qelsimulator-action-empty-slot">
        <source></source>
        <translation>Nehmen Sie die Platte aus dem Schacht und bestätigen Sie dann.</translation>
    </message>
    <message id="qelsimulator-action-check-plate">
        <source></source>
        <translation>Prüfen Sie, ob die Platte flach aufliegt, und bestätigen Sie dann.</translation>
    </message>
    <message id="qelsimulator-unplugged">
        <source></source>
        <translation>Das simulierte Gerät ist nicht angeschlossen. Schließen Sie es an und öffnen Sie es erneut.</translation>
    </message>
    <message id="qelsimulator-in-use">
        <source></source>
        <translation>Das simulierte Gerät wird bereits benutzt. Schließen Sie es zuerst dort.</translation>
    </message>
    <message id="qelsimulator-refused">
        <source></source>
        <translation>Laut Szenario verweigert das simulierte Gerät dies.</translation>
    </message>
    <message id="qelsimulator-scripted">
        <source></source>
        <translation>Dieser Fehler ist im Szenario vorgesehen.</translation>
    </message>
    <message id="qelsimulator-busy">
        <source></source>
        <translation>Das simulierte Gerät arbeitet noch. Warten Sie, bis es fertig ist.</translation>
    </message>
    <message id="qelsimulator-configuration">
        <source></source>
        <translation>Eine Einstellung fehlt, hat den falschen Typ oder liegt außerhalb der Grenzen. Das Protokoll nennt sie.</translation>
    </message>
    <message id="qelsimulator-calibrate">
        <source></source>
        <translation>Kalibrieren Sie das simulierte Gerät und messen Sie dann erneut.</translation>
    </message>
    <message id="qelsimulator-no-firmware">
        <source></source>
        <translation>Das Abbild ist keine Firmware für ein simuliertes Gerät.</translation>
    </message>
    <message id="qelsimulator-damaged-firmware">
        <source></source>
        <translation>Das Firmware-Abbild ist beschädigt. Beschaffen Sie es erneut.</translation>
    </message>
    <message id="qelsimulator-empty-firmware">
        <source></source>
        <translation>Das Firmware-Abbild enthält kein Programm.</translation>
    </message>
    <message id="qelsimulator-new-protocol">
        <source></source>
        <translation>Das simulierte Gerät spricht ein neueres Protokoll. Aktualisieren Sie seinen Treiber.</translation>
    </message>
</context>
</TS>
