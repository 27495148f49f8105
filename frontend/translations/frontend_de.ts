<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name></name>
    <message id="qelfrontend-configuration-type">
        <source></source>
        <translation>Angegeben ist eine Konfiguration vom Typ %2, nötig ist ein QVariantHash.</translation>
    </message>
    <message id="qelfrontend-device-ambiguous">
        <source></source>
        <translation>„%1“ trifft auf mehrere Geräte zu; geben Sie mehr davon an oder Treiber/Ort:%2</translation>
    </message>
    <message id="qelfrontend-device-none">
        <source></source>
        <translation>Es gibt kein Gerät „%1“: Kein Treiber hat eines gefunden. Prüfen Sie, ob es angeschlossen und eingeschaltet ist.</translation>
    </message>
    <message id="qelfrontend-device-unknown">
        <source></source>
        <translation>Es gibt kein Gerät „%1“; angeschlossen sind:%2</translation>
    </message>
    <message id="qelfrontend-error-none">
        <source></source>
        <translation>Das Gerät arbeitet einwandfrei.</translation>
    </message>
    <message id="qelfrontend-error-unknown">
        <source></source>
        <translation>Ein unbekannter Fehler ist aufgetreten.</translation>
    </message>
    <message id="qelfrontend-error-vendor-specific">
        <source></source>
        <translation>Das Gerät hat einen internen Fehler gemeldet.</translation>
    </message>
    <message id="qelfrontend-error-cant-open">
        <source></source>
        <translation>Das Gerät lässt sich nicht öffnen.</translation>
    </message>
    <message id="qelfrontend-error-not-ready">
        <source></source>
        <translation>Das Gerät ist nicht bereit.</translation>
    </message>
    <message id="qelfrontend-error-timeout">
        <source></source>
        <translation>Das Gerät hat nicht geantwortet.</translation>
    </message>
    <message id="qelfrontend-error-cant-write">
        <source></source>
        <translation>Die Verbindung zum Gerät ist gestört.</translation>
    </message>
    <message id="qelfrontend-error-checksum-mismatch">
        <source></source>
        <translation>Die Prüfsumme der Daten vom Gerät stimmt nicht.</translation>
    </message>
    <message id="qelfrontend-error-invalid-configuration">
        <source></source>
        <translation>Mit diesen Einstellungen kann das Gerät das nicht ausführen.</translation>
    </message>
    <message id="qelfrontend-error-not-calibrated">
        <source></source>
        <translation>Das Gerät ist nicht kalibriert.</translation>
    </message>
    <message id="qelfrontend-error-disconnected">
        <source></source>
        <translation>Die Verbindung zum Gerät ist getrennt worden.</translation>
    </message>
    <message id="qelfrontend-error-boot-fail">
        <source></source>
        <translation>Der Bootloader kann die Firmware nicht starten.</translation>
    </message>
    <message id="qelfrontend-error-api-too-new">
        <source></source>
        <translation>Das Gerät spricht ein neueres Protokoll, das nicht unterstützt wird.</translation>
    </message>
    <message id="qelfrontend-feature-ambiguous">
        <source></source>
        <translation>„%1“ trifft auf mehrere Funktionen zu; geben Sie eine davon an: %2.</translation>
    </message>
    <message id="qelfrontend-feature-unknown">
        <source></source>
        <translation>Es gibt keine Funktion „%1“; es gibt: %2.</translation>
    </message>
    <message id="qelfrontend-file-kind">
        <source></source>
        <translation>sie ist keine gewöhnliche Datei</translation>
    </message>
    <message id="qelfrontend-file-size">
        <source></source>
        <translation>sie ist größer als %1 Byte</translation>
    </message>
    <message id="qelfrontend-json-duplicate-key">
        <source></source>
        <translation>Das Objekt bei %1 enthält den Schlüssel „%2“ zweimal; entfernen Sie einen davon.</translation>
    </message>
    <message id="qelfrontend-json-single">
        <source></source>
        <translation>Das ist kein JSON: erwartet wird genau ein Wert.</translation>
    </message>
    <message id="qelfrontend-json-size">
        <source></source>
        <translation>Dieses JSON hat %2 Byte; gelesen werden höchstens %3.</translation>
    </message>
    <message id="qelfrontend-json-syntax">
        <source></source>
        <translation>Das ist kein JSON: %2, bei Byte %3.</translation>
    </message>
    <message id="qelfrontend-kind-bool">
        <source></source>
        <translation>true oder false</translation>
    </message>
    <message id="qelfrontend-kind-bytes">
        <source></source>
        <translation>Base64 oder @DATEI</translation>
    </message>
    <message id="qelfrontend-kind-color">
        <source></source>
        <translation>eine Farbe wie #ff8000</translation>
    </message>
    <message id="qelfrontend-kind-flags">
        <source></source>
        <translation>eine Liste von Kennzeichen</translation>
    </message>
    <message id="qelfrontend-kind-integer">
        <source></source>
        <translation>eine ganze Zahl</translation>
    </message>
    <message id="qelfrontend-kind-integers">
        <source></source>
        <translation>ganze Zahlen</translation>
    </message>
    <message id="qelfrontend-kind-milliseconds">
        <source></source>
        <translation>eine ganze Zahl von Millisekunden</translation>
    </message>
    <message id="qelfrontend-kind-name">
        <source></source>
        <translation>ein Name</translation>
    </message>
    <message id="qelfrontend-kind-number">
        <source></source>
        <translation>eine Zahl</translation>
    </message>
    <message id="qelfrontend-kind-numbers">
        <source></source>
        <translation>Zahlen</translation>
    </message>
    <message id="qelfrontend-kind-text">
        <source></source>
        <translation>ein Text</translation>
    </message>
    <message id="qelfrontend-kind-texts">
        <source></source>
        <translation>Texte</translation>
    </message>
    <message id="qelfrontend-kind-unsupported">
        <source></source>
        <translation>ein Wert, der hier nicht angegeben werden kann</translation>
    </message>
    <message id="qelfrontend-kind-wells">
        <source></source>
        <translation>Kavitäten wie A1:B12,C3 oder eine Liste von true und false</translation>
    </message>
    <message id="qelfrontend-limit-choices">
        <source></source>
        <translation>, erlaubt sind: %1</translation>
    </message>
    <message id="qelfrontend-limit-length">
        <source></source>
        <translation>, %1 Stück oder keine</translation>
    </message>
    <message id="qelfrontend-limit-maximum">
        <source></source>
        <translation> bis %1</translation>
    </message>
    <message id="qelfrontend-limit-minimum">
        <source></source>
        <translation> ab %1</translation>
    </message>
    <message id="qelfrontend-limit-range">
        <source></source>
        <translation> von %1 bis %2</translation>
    </message>
    <message id="qelfrontend-limit-step">
        <source></source>
        <translation> in Schritten von %1</translation>
    </message>
    <message id="qelfrontend-missing">
        <source></source>
        <translation>Das Gerät hat „%1“ nicht geliefert, das %2 sein muss; melden Sie das dem Hersteller des Treibers.</translation>
    </message>
    <message id="qelfrontend-names-count">
        <source></source>
        <translation>Das Gerät hat „%1“ mit %2 Namen für %3 Wahlmöglichkeiten geliefert; melden Sie das dem Hersteller des Treibers.</translation>
    </message>
    <message id="qelfrontend-not-as-configured">
        <source></source>
        <translation>Das Gerät hat „%1“ als %2 geliefert und sollte mit %3 messen; melden Sie das dem Hersteller des Treibers.</translation>
    </message>
    <message id="qelfrontend-not-as-described">
        <source></source>
        <translation>Das Gerät hat „%1“ als %2 geliefert und beschreibt es als %3; melden Sie das dem Hersteller des Treibers.</translation>
    </message>
    <message id="qelfrontend-not-selected">
        <source></source>
        <translation>Das Gerät hat „%1“ geliefert, den Wert einer Kavität, die nicht gemessen werden sollte; melden Sie das dem Hersteller des Treibers.</translation>
    </message>
    <message id="qelfrontend-not-utc">
        <source></source>
        <translation>Das Gerät hat als „%1“ keinen gültigen Zeitpunkt in UTC geliefert; melden Sie das dem Hersteller des Treibers.</translation>
    </message>
    <message id="qelfrontend-out-of-range">
        <source></source>
        <translation>Das Gerät hat „%1“ als %2 geliefert, was nicht sein kann; melden Sie das dem Hersteller des Treibers.</translation>
    </message>
    <message id="qelfrontend-plate-impossible">
        <source></source>
        <translation>Das Gerät hat „%1“ mit einer Platte aus %2 mal %3 Kavitäten geliefert, was nicht sein kann; melden Sie das dem Hersteller des Treibers.</translation>
    </message>
    <message id="qelfrontend-plate-none">
        <source></source>
        <translation>Dieses Ergebnis ist keine Platte.</translation>
    </message>
    <message id="qelfrontend-read-count">
        <source></source>
        <translation>Das Gerät hat „%1“ mit %2 Messungen der Platte geliefert statt mit %3; melden Sie das dem Hersteller des Treibers.</translation>
    </message>
    <message id="qelfrontend-run-aborted">
        <source></source>
        <translation>Der Lauf wurde vom Benutzer abgebrochen.</translation>
    </message>
    <message id="qelfrontend-run-busy">
        <source></source>
        <translation>Das Gerät war die ganze Zeit anderweitig beschäftigt. Versuchen Sie es später noch einmal.</translation>
    </message>
    <message id="qelfrontend-run-closed">
        <source></source>
        <translation>Das Gerät ließ sich nicht öffnen und nannte keinen Grund.</translation>
    </message>
    <message id="qelfrontend-run-earlier-error">
        <source></source>
        <translation> Ein früherer Fehler besteht noch und kann der Grund sein: %1</translation>
    </message>
    <message id="qelfrontend-run-failed">
        <source></source>
        <translation>Das Gerät hat den Lauf ohne Ergebnis beendet und keinen Grund genannt.</translation>
    </message>
    <message id="qelfrontend-file-in-use">
        <source></source>
        <translation>Ein anderer Prozess schreibt Ergebnisse hinein</translation>
    </message>
    <message id="qelfrontend-document-other">
        <source></source>
        <translation>Das ist kein Dokument eines Laufs mit einem Ergebnis.</translation>
    </message>
    <message id="qelfrontend-document-version">
        <source></source>
        <translation>Das Dokument hat die Version %1, dieses Programm liest die Version %2.</translation>
    </message>
    <message id="qelfrontend-run-gone">
        <source></source>
        <translation>Das Gerät wurde während des Laufs getrennt oder geschlossen. Prüfen Sie die Verbindung und beginnen Sie von vorn.</translation>
    </message>
    <message id="qelfrontend-run-no-feature">
        <source></source>
        <translation>Dieses Gerät bietet %1 nicht an; es bietet: %2.</translation>
    </message>
    <message id="qelfrontend-run-refused">
        <source></source>
        <translation>Das Gerät hat es abgelehnt, %1 auszuführen, und keinen Grund genannt.</translation>
    </message>
    <message id="qelfrontend-run-stalled">
        <source></source>
        <translation>Der Lauf hat seit %1 s kein Lebenszeichen gegeben.</translation>
    </message>
    <message id="qelfrontend-run-timeout">
        <source></source>
        <translation>Der Lauf endete nicht innerhalb von %1 s und wurde angehalten. Prüfen Sie das Gerät oder geben Sie mehr Zeit.</translation>
    </message>
    <message id="qelfrontend-setting-digits">
        <source></source>
        <translation>Einstellung „%1“: Eine so lange Zahl kann Stellen verloren haben; schreiben Sie sie als Text in Anführungszeichen.</translation>
    </message>
    <message id="qelfrontend-setting-empty">
        <source></source>
        <translation>Einstellung „%1“: Angegeben ist nichts, wo ein Wert hingehört; lassen Sie die Einstellung für ihren Standardwert weg, oder schreiben Sie [] für eine leere Liste.</translation>
    </message>
    <message id="qelfrontend-setting-file">
        <source></source>
        <translation>Einstellung „%1“: „%2“ lässt sich nicht lesen: %3.</translation>
    </message>
    <message id="qelfrontend-setting-form">
        <source></source>
        <translation>„%1“ hat nicht die Form NAME=WERT.</translation>
    </message>
    <message id="qelfrontend-setting-length">
        <source></source>
        <translation>Einstellung „%1“: %2 Werte angegeben, genau %3 oder keiner nötig.</translation>
    </message>
    <message id="qelfrontend-setting-missing">
        <source></source>
        <translation>Einstellung „%1“ fehlt; anzugeben ist: %2.</translation>
    </message>
    <message id="qelfrontend-setting-none">
        <source></source>
        <translation>Es gibt keine Einstellung „%1“; diese Funktion hat keine.</translation>
    </message>
    <message id="qelfrontend-setting-type">
        <source></source>
        <translation>Einstellung „%1“: angegeben ist ein Wert vom Typ %2, nötig ist %3.</translation>
    </message>
    <message id="qelfrontend-setting-unknown">
        <source></source>
        <translation>Es gibt keine Einstellung „%1“; es gibt: %2.</translation>
    </message>
    <message id="qelfrontend-setting-wells">
        <source></source>
        <translation>Einstellung „%1“: %2</translation>
    </message>
    <message id="qelfrontend-setting-wrong">
        <source></source>
        <translation>Einstellung „%1“: „%2“ ist nicht erlaubt; anzugeben ist: %3.</translation>
    </message>
    <message id="qelfrontend-start-no-folder">
        <source></source>
        <translation>Den Ordner „%1“, in dem Treiber gesucht werden sollen, gibt es nicht.</translation>
    </message>
    <message id="qelfrontend-unexpected">
        <source></source>
        <translation>Das Gerät hat „%1“ als %2 geliefert, wo nichts hingehört; melden Sie das dem Hersteller des Treibers.</translation>
    </message>
    <message id="qelfrontend-unknown-type">
        <source></source>
        <translation>Das Gerät hat „%1“ als „%2“ geliefert, was kein Typ einer Einstellung ist; melden Sie das dem Hersteller des Treibers.</translation>
    </message>
    <message id="qelfrontend-value-content">
        <source></source>
        <translation>Der Wert bei %1 lässt sich nicht als %2 lesen.</translation>
    </message>
    <message id="qelfrontend-value-count">
        <source></source>
        <translation>Die Werte bis %1 sind mehr als %2.</translation>
    </message>
    <message id="qelfrontend-value-depth">
        <source></source>
        <translation>Der Wert bei %1 ist tiefer als %2 Ebenen geschachtelt.</translation>
    </message>
    <message id="qelfrontend-value-tag">
        <source></source>
        <translation>Das Objekt bei %1 hat einen „$type“ und muss daneben nur noch „value“ haben.</translation>
    </message>
    <message id="qelfrontend-value-type">
        <source></source>
        <translation>Der Wert bei %1 hat den Typ „%2“, für den kein JSON festgelegt ist.</translation>
    </message>
    <message id="qelfrontend-value-unicode">
        <source></source>
        <translation>Der Text bei %1 ist kein gültiges Unicode.</translation>
    </message>
    <message id="qelfrontend-value-unwritable">
        <source></source>
        <translation>Der Wert bei %1 ist ein %2, den JSON nicht ohne Verlust aufnimmt.</translation>
    </message>
    <message id="qelfrontend-well-count">
        <source></source>
        <translation>Das Gerät hat „%1“ mit %2 Werten für %3 mal %4 Kavitäten geliefert; melden Sie das dem Hersteller des Treibers.</translation>
    </message>
    <message id="qelfrontend-wells-unknown">
        <source></source>
        <translation>„%1“ ist keine Kavität und kein Bereich; sie reichen von A1 bis %2.</translation>
    </message>
    <message id="qelfrontend-wrong-content">
        <source></source>
        <translation>Das Gerät hat „%1“ als „%2“ geliefert statt als „%3“; melden Sie das dem Hersteller des Treibers.</translation>
    </message>
    <message id="qelfrontend-wrong-type">
        <source></source>
        <translation>Das Gerät hat „%1“ als %2 geliefert statt als %3; melden Sie das dem Hersteller des Treibers.</translation>
    </message>
</context>
</TS>
