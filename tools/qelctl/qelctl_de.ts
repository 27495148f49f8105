<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name></name>
    <message id="qelctl-details">
        <source></source>
        <translation>Findet, öffnet und steuert Plattenleser.

  qelctl list
  qelctl run SERIENNUMMER absorbance --output platte.csv --format csv

„qelctl BEFEHL --help“ sagt alles über einen Befehl.

Rückgabewerte: 0 erledigt, 1 Lauf fehlgeschlagen, 2 falscher Aufruf, 3 Gerät oder Funktion gibt es nicht, 4 lässt sich nicht öffnen, 5 Gerätefehler, 6 Zeit abgelaufen, 7 vom Benutzer abgebrochen, 8 Ausgabe nicht schreibbar, 9 nicht alle Regeln prüfbar, 10 Treiber abgestürzt, 130 unterbrochen.</translation>
    </message>
    <message id="qelctl-commands">
        <source></source>
        <translation>Befehle:</translation>
    </message>
    <message id="qelctl-option-help">
        <source></source>
        <translation>Diese Hilfe zeigen.</translation>
    </message>
    <message id="qelctl-option-version">
        <source></source>
        <translation>Die Version zeigen.</translation>
    </message>
    <message id="qelctl-option-plugins">
        <source></source>
        <translation>Auch unter ORDNER nach Treibern suchen. Sie haben Vorrang.</translation>
    </message>
    <message id="qelctl-option-lang">
        <source></source>
        <translation>Die Sprache SPRACHE sprechen, etwa de oder en.</translation>
    </message>
    <message id="qelctl-option-log">
        <source></source>
        <translation>Meldungen der Bibliothek ab dieser Stufe auf der Standardfehlerausgabe zeigen.</translation>
    </message>
    <message id="qelctl-option-color">
        <source></source>
        <translation>Wann Farben benutzt werden.</translation>
    </message>
    <message id="qelctl-option-json">
        <source></source>
        <translation>JSON für Programme statt Text für Menschen ausgeben.</translation>
    </message>
    <message id="qelctl-argument-command">
        <source></source>
        <translation>Was zu tun ist.</translation>
    </message>
    <message id="qelctl-argument-device">
        <source></source>
        <translation>Eine Seriennummer, TREIBER/ORT oder ein Anfang davon oder des Namens.</translation>
    </message>
    <message id="qelctl-argument-feature">
        <source></source>
        <translation>Eine Funktion wie absorbance-measurement oder ein Anfang davon.</translation>
    </message>
    <message id="qelctl-usage">
        <source></source>
        <translation>Aufruf: %1 [OPTIONEN]</translation>
    </message>
    <message id="qelctl-arguments">
        <source></source>
        <translation>Argumente:</translation>
    </message>
    <message id="qelctl-options">
        <source></source>
        <translation>Optionen:</translation>
    </message>
    <message id="qelctl-placeholder-command">
        <source></source>
        <translation>BEFEHL</translation>
    </message>
    <message id="qelctl-placeholder-device">
        <source></source>
        <translation>GERÄT</translation>
    </message>
    <message id="qelctl-placeholder-dir">
        <source></source>
        <translation>ORDNER</translation>
    </message>
    <message id="qelctl-placeholder-directory">
        <source></source>
        <translation>ORDNER</translation>
    </message>
    <message id="qelctl-placeholder-feature">
        <source></source>
        <translation>FUNKTION</translation>
    </message>
    <message id="qelctl-placeholder-file">
        <source></source>
        <translation>DATEI</translation>
    </message>
    <message id="qelctl-placeholder-key">
        <source></source>
        <translation>NAME</translation>
    </message>
    <message id="qelctl-placeholder-link">
        <source></source>
        <translation>VERBINDUNG</translation>
    </message>
    <message id="qelctl-placeholder-locale">
        <source></source>
        <translation>SPRACHE</translation>
    </message>
    <message id="qelctl-placeholder-path">
        <source></source>
        <translation>PFAD</translation>
    </message>
    <message id="qelctl-placeholder-seconds">
        <source></source>
        <translation>SEKUNDEN</translation>
    </message>
    <message id="qelctl-placeholder-serial">
        <source></source>
        <translation>SERIENNUMMER</translation>
    </message>
    <message id="qelctl-placeholder-value">
        <source></source>
        <translation>WERT</translation>
    </message>
    <message id="qelctl-option-unknown">
        <source></source>
        <translation>Die Option %1 gibt es hier nicht. Siehe „%2 --help“.</translation>
    </message>
    <message id="qelctl-option-misplaced">
        <source></source>
        <translation>Die Option %1 steht vor dem Befehl. Siehe „qelctl --help“.</translation>
    </message>
    <message id="qelctl-option-without-value">
        <source></source>
        <translation>Die Option %1 nimmt keinen Wert. Siehe „%2 --help“.</translation>
    </message>
    <message id="qelctl-option-needs-value">
        <source></source>
        <translation>Hinter %1 fehlt ein Wert. Siehe „%2 --help“.</translation>
    </message>
    <message id="qelctl-progress-remaining">
        <source></source>
        <translation>noch %1</translation>
    </message>
    <message id="qelctl-reader-gone">
        <source></source>
        <translation>Die Standardausgabe liest niemand mehr.</translation>
    </message>
    <message id="qelctl-taken">
        <source></source>
        <translation>Nehme %1.</translation>
    </message>
    <message id="qelctl-run-unfinished">
        <source></source>
        <translation>Der Treiber hat die Ereignisschleife des Werkzeugs beendet, bevor der Lauf zu Ende war.</translation>
    </message>
    <message id="qelctl-driver-crashed">
        <source></source>
        <translation>Ein Treiber ist abgestürzt</translation>
    </message>
    <message id="qelctl-driver-hangs">
        <source></source>
        <translation>Ein Treiber kehrt aus einem Aufruf nicht zurück</translation>
    </message>
    <message id="qelctl-driver-exits">
        <source></source>
        <translation>Ein Treiber hat den Prozess beendet</translation>
    </message>
    <message id="qelctl-driver-event">
        <source></source>
        <translation>Ereignisschleife</translation>
    </message>
    <message id="qelctl-no-plain-file">
        <source></source>
        <translation>%1 ist keine gewöhnliche Datei; eine Pipe oder ein Gerät endet womöglich nie.</translation>
    </message>
    <message id="qelctl-run-no-separator">
        <source></source>
        <translation>--%1 nimmt eines der Zeichen , ; . | tab und Leerzeichen, nicht „%2“.</translation>
    </message>
    <message id="qelctl-run-same-separators">
        <source></source>
        <translation>Trennzeichen und Dezimalzeichen sind gleich; geben Sie mit --delimiter oder --decimal ein anderes an.</translation>
    </message>
    <message id="qelctl-run-format-suffix">
        <source></source>
        <translation>Eine Datei namens %1 enthält nicht das Format %2; ändern Sie eins von beiden.</translation>
    </message>
    <message id="qelctl-run-interval-alone">
        <source></source>
        <translation>--interval gehört zu --repeat.</translation>
    </message>
    <message id="qelctl-run-no-such-progress">
        <source></source>
        <translation>Einen Fortschritt „%1“ gibt es nicht; es gibt json.</translation>
    </message>
    <message id="qelctl-run-option-exact">
        <source></source>
        <translation>GERÄT nur als ganze Seriennummer, ganzen Pfad oder ganzen Namen verstehen, wie es Skripte immer tun.</translation>
    </message>
    <message id="qelctl-run-option-delimiter">
        <source></source>
        <translation>Zwischen den Werten von csv und plate: , (voreingestellt) ; | tab.</translation>
    </message>
    <message id="qelctl-run-option-decimal">
        <source></source>
        <translation>Das Dezimalzeichen in csv und plate: . (voreingestellt) oder ,.</translation>
    </message>
    <message id="qelctl-run-option-note">
        <source></source>
        <translation>Eine Notiz, die in jedem Format beim Ergebnis steht.</translation>
    </message>
    <message id="qelctl-run-option-resume">
        <source></source>
        <translation>Die Reihe in der Datei von --output (csv oder json) nach ihrem letzten fertigen Lauf fortsetzen.</translation>
    </message>
    <message id="qelctl-run-option-progress">
        <source></source>
        <translation>Den Fortschritt als JSON auf die Fehlerausgabe schreiben, eine Zeile je Meldung.</translation>
    </message>
    <message id="qelctl-run-no-placeholder">
        <source></source>
        <translation>Der Name einer Datei kennt {serial}, {name}, {feature} und {time}, nicht %1.</translation>
    </message>
    <message id="qelctl-run-resume-what">
        <source></source>
        <translation>--resume gehört zu --repeat und einer Datei in --output.</translation>
    </message>
    <message id="qelctl-run-resume-format">
        <source></source>
        <translation>Nur eine Reihe in csv oder json lässt sich fortsetzen; in den anderen Formaten sind die Läufe nicht zu unterscheiden.</translation>
    </message>
    <message id="qelctl-run-resume-other">
        <source></source>
        <translation>%1 enthält Läufe eines anderen Geräts.</translation>
    </message>
    <message id="qelctl-run-resume-line">
        <source></source>
        <translation>%1 lässt sich nicht fortsetzen: Zeile %2 gehört zu keinem Lauf mit diesem Gerät und dieser Funktion. Nichts wurde geändert.</translation>
    </message>
    <message id="qelctl-run-resume-none">
        <source></source>
        <translation>%1 enthält keine Reihe von Läufen.</translation>
    </message>
    <message id="qelctl-run-interval-short">
        <source></source>
        <translation>Ein Lauf dauert länger als der Abstand; der nächste beginnt sofort.</translation>
    </message>
    <message id="qelctl-run-printed-instead">
        <source></source>
        <translation>Das Ergebnis steht stattdessen auf der Standardausgabe.</translation>
    </message>
    <message id="qelctl-run-delivered-kept">
        <source></source>
        <translation>Was das Gerät statt eines Ergebnisses geliefert hat, steht in %1.</translation>
    </message>
    <message id="qelctl-run-delivered-printed">
        <source></source>
        <translation>Was das Gerät statt eines Ergebnisses geliefert hat:</translation>
    </message>
    <message id="qelctl-no-watchdog">
        <source></source>
        <translation>Treiber, die sich aufhängen, werden nicht bemerkt: Das System verweigert einen weiteren Thread.</translation>
    </message>
    <message id="qelctl-run-resume-setting">
        <source></source>
        <translation>Die Durchläufe in der Datei „%1“ wurden mit einem anderen Wert der Einstellung „%2“ gemacht. Setzen Sie mit demselben fort, oder wählen Sie eine andere Datei.</translation>
    </message>
    <message id="qelctl-run-kept">
        <source></source>
        <translation>%1 von %2 Läufen sind fertig und stehen in %3; --resume setzt sie fort.</translation>
    </message>
    <message id="qelctl-run-next">
        <source></source>
        <translation>Lauf %1 von %2 beginnt um %3.</translation>
    </message>
    <message id="qelctl-run-heading">
        <source></source>
        <translation>Lauf %1 von %2, %3</translation>
    </message>
    <message id="qelctl-run-no-file">
        <source></source>
        <translation>--output nimmt den Namen einer Datei.</translation>
    </message>
    <message id="qelctl-argument-missing">
        <source></source>
        <translation>%1 fehlt. Siehe „%2 --help“.</translation>
    </message>
    <message id="qelctl-argument-surplus">
        <source></source>
        <translation>Das Argument „%1“ ist zu viel. Siehe „%2 --help“.</translation>
    </message>
    <message id="qelctl-not-a-count">
        <source></source>
        <translation>--%1 erwartet eine ganze Zahl ab %3, nicht „%2“.</translation>
    </message>
    <message id="qelctl-not-a-time">
        <source></source>
        <translation>--%1 erwartet eine Zeit in Sekunden, etwa 90 oder 0.5, nicht „%2“.</translation>
    </message>
    <message id="qelctl-no-command">
        <source></source>
        <translation>Sagen Sie, was zu tun ist, etwa „qelctl list“. Siehe „qelctl --help“.</translation>
    </message>
    <message id="qelctl-no-such-command">
        <source></source>
        <translation>Den Befehl „%1“ gibt es nicht. Wählen Sie aus: %2.</translation>
    </message>
    <message id="qelctl-no-such-level">
        <source></source>
        <translation>--log erwartet quiet, warning, info oder debug, nicht „%1“.</translation>
    </message>
    <message id="qelctl-no-such-color">
        <source></source>
        <translation>--color erwartet auto, always oder never, nicht „%1“.</translation>
    </message>
    <message id="qelctl-no-such-driver">
        <source></source>
        <translation>Den Treiber „%1“ gibt es nicht. Geladen sind: %2.</translation>
    </message>
    <message id="qelctl-no-such-interface">
        <source></source>
        <translation>Die Anschlussart „%1“ gibt es nicht. Wählen Sie aus: %2.</translation>
    </message>
    <message id="qelctl-not-created">
        <source></source>
        <translation>%1: Der Treiber „%2“ kennt das Gerät nicht mehr. Rufen Sie erneut „qelctl list“ auf.</translation>
    </message>
    <message id="qelctl-interrupted">
        <source></source>
        <translation>Unterbrochen; es gibt kein Ergebnis.</translation>
    </message>
    <message id="qelctl-file-exists">
        <source></source>
        <translation>Die Datei „%1“ gibt es schon. Wählen Sie einen anderen Namen oder ersetzen Sie sie mit --force.</translation>
    </message>
    <message id="qelctl-cannot-print">
        <source></source>
        <translation>Auf die Standardausgabe kann nicht geschrieben werden: %1.</translation>
    </message>
    <message id="qelctl-cannot-write">
        <source></source>
        <translation>In die Datei „%1“ kann nicht geschrieben werden: %2.</translation>
    </message>
    <message id="qelctl-cannot-read">
        <source></source>
        <translation>Die Datei „%1“ kann nicht gelesen werden: %2.</translation>
    </message>
    <message id="qelctl-column-name">
        <source></source>
        <translation>Name</translation>
    </message>
    <message id="qelctl-column-serial">
        <source></source>
        <translation>Seriennr.</translation>
    </message>
    <message id="qelctl-column-device">
        <source></source>
        <translation>Gerät</translation>
    </message>
    <message id="qelctl-column-interface">
        <source></source>
        <translation>Anschluss</translation>
    </message>
    <message id="qelctl-column-state">
        <source></source>
        <translation>Zustand</translation>
    </message>
    <message id="qelctl-column-error">
        <source></source>
        <translation>Fehler</translation>
    </message>
    <message id="qelctl-column-features">
        <source></source>
        <translation>Funktionen</translation>
    </message>
    <message id="qelctl-column-driver">
        <source></source>
        <translation>Treiber</translation>
    </message>
    <message id="qelctl-column-version">
        <source></source>
        <translation>Version</translation>
    </message>
    <message id="qelctl-column-manufacturer">
        <source></source>
        <translation>Hersteller</translation>
    </message>
    <message id="qelctl-column-file">
        <source></source>
        <translation>Datei</translation>
    </message>
    <message id="qelctl-state-closed">
        <source></source>
        <translation>geschlossen</translation>
    </message>
    <message id="qelctl-state-idle">
        <source></source>
        <translation>offen, bereit</translation>
    </message>
    <message id="qelctl-state-busy">
        <source></source>
        <translation>offen, beschäftigt</translation>
    </message>
    <message id="qelctl-list-summary">
        <source></source>
        <translation>Die Geräte auflisten</translation>
    </message>
    <message id="qelctl-list-details">
        <source></source>
        <translation>Listet die Geräte auf, die jetzt geöffnet werden können.</translation>
    </message>
    <message id="qelctl-list-option-driver">
        <source></source>
        <translation>Nur Geräte des Treibers D. Darf wiederholt werden.</translation>
    </message>
    <message id="qelctl-list-option-interface">
        <source></source>
        <translation>Nur Geräte mit Anschluss I: simulator, serial, usb-hid, network.</translation>
    </message>
    <message id="qelctl-list-option-watch">
        <source></source>
        <translation>Weiterlaufen und eine Zeile ausgeben, wenn ein Gerät kommt oder geht. Strg-C beendet.</translation>
    </message>
    <message id="qelctl-list-arrived">
        <source></source>
        <translation>+ %1  %2  %3</translation>
    </message>
    <message id="qelctl-list-left">
        <source></source>
        <translation>- %1  %2  %3</translation>
    </message>
    <message id="qelctl-list-changed">
        <source></source>
        <translation>* %1  %2  %3</translation>
    </message>
    <message id="qelctl-list-empty">
        <source></source>
        <translation>Keine Geräte gefunden. Schließen Sie eines an und schalten Sie es ein; „qelctl drivers“ zeigt, welche gesteuert werden können.</translation>
    </message>
    <message id="qelctl-list-no-drivers">
        <source></source>
        <translation>Keine Treiber gefunden. Installieren Sie einen oder nennen Sie seinen Ordner mit --plugins ORDNER.</translation>
    </message>
    <message id="qelctl-drivers-summary">
        <source></source>
        <translation>Die Treiber auflisten</translation>
    </message>
    <message id="qelctl-drivers-details">
        <source></source>
        <translation>Listet die geladenen Treiber auf, und die Dateien, die sich nicht laden ließen, mit dem Grund.</translation>
    </message>
    <message id="qelctl-drivers-no-interface">
        <source></source>
        <translation>Die Datei ist ein Plugin, aber keines für Gerätetreiber.</translation>
    </message>
    <message id="qelctl-drivers-failure">
        <source></source>
        <translation>Nicht geladen: %1: %2</translation>
    </message>
    <message id="qelctl-show-summary">
        <source></source>
        <translation>Zeigen, was ein Gerät ist und kann</translation>
    </message>
    <message id="qelctl-show-details">
        <source></source>
        <translation>Öffnet ein Gerät und zeigt Identität, Zustand, Fehler und Funktionen mit ihren Einstellungen.</translation>
    </message>
    <message id="qelctl-show-plate">
        <source></source>
        <translation>%1 × %2 Kavitäten</translation>
    </message>
    <message id="qelctl-show-range">
        <source></source>
        <translation>%1 bis %2 %3</translation>
    </message>
    <message id="qelctl-show-default">
        <source></source>
        <translation>%1 (Vorgabe: %2)</translation>
    </message>
    <message id="qelctl-show-all">
        <source></source>
        <translation>alle</translation>
    </message>
    <message id="qelctl-show-empty-list">
        <source></source>
        <translation>keine</translation>
    </message>
    <message id="qelctl-watch-summary">
        <source></source>
        <translation>Ausgeben, was ein Gerät meldet</translation>
    </message>
    <message id="qelctl-watch-details">
        <source></source>
        <translation>Öffnet ein Gerät und gibt jedes Signal aus, sobald es kommt, als ein JSON-Objekt je Zeile. Strg-C beendet.</translation>
    </message>
    <message id="qelctl-watch-closed">
        <source></source>
        <translation>%1 hat geschlossen.</translation>
    </message>
    <message id="qelctl-run-summary">
        <source></source>
        <translation>Eine Funktion ausführen, etwa eine Messung</translation>
    </message>
    <message id="qelctl-run-details">
        <source></source>
        <translation>Öffnet ein Gerät, führt eine Funktion aus und gibt das Ergebnis aus.

  qelctl run SIM-A-0001 absorbance-measurement --set wavelengths=450,620
  qelctl run SIM-A-0001 absorbance --format csv --output platte.csv

„qelctl show GERÄT“ listet die Funktionen und ihre Einstellungen auf.</translation>
    </message>
    <message id="qelctl-run-option-config">
        <source></source>
        <translation>Die Einstellungen als JSON-Objekt oder die Datei, die es enthält.</translation>
    </message>
    <message id="qelctl-run-option-set">
        <source></source>
        <translation>Eine Einstellung, etwa wavelengths=450,620. Darf wiederholt werden.</translation>
    </message>
    <message id="qelctl-run-option-timeout">
        <source></source>
        <translation>Einen Lauf nach S Sekunden aufgeben; ohne diese Angabe nach 10 Minuten ohne Fortschritt.</translation>
    </message>
    <message id="qelctl-run-option-yes">
        <source></source>
        <translation>Ohne Rückfrage bestätigen, was das Gerät vom Benutzer verlangt.</translation>
    </message>
    <message id="qelctl-run-option-no-input">
        <source></source>
        <translation>Ohne Rückfrage ablehnen, was das Gerät vom Benutzer verlangt.</translation>
    </message>
    <message id="qelctl-run-option-format">
        <source></source>
        <translation>table für Menschen, plate für CSV in Plattenform, csv für eine Zeile je Kavität, json für alles.</translation>
    </message>
    <message id="qelctl-run-option-output">
        <source></source>
        <translation>Das Ergebnis in DATEI statt auf die Standardausgabe schreiben; die Endung bestimmt das Format. DATEI kann {serial}, {name}, {feature} und {time} enthalten.</translation>
    </message>
    <message id="qelctl-run-option-force">
        <source></source>
        <translation>DATEI ersetzen, falls es sie gibt.</translation>
    </message>
    <message id="qelctl-run-option-repeat">
        <source></source>
        <translation>N-mal ausführen.</translation>
    </message>
    <message id="qelctl-run-option-interval">
        <source></source>
        <translation>Jeden Lauf S Sekunden nach dem Beginn des vorigen beginnen.</translation>
    </message>
    <message id="qelctl-run-option-no-progress">
        <source></source>
        <translation>Keinen Fortschrittsbalken zeigen.</translation>
    </message>
    <message id="qelctl-run-config-no-object">
        <source></source>
        <translation>--config erwartet ein JSON-Objekt wie {"rapidMode":true}. %1</translation>
    </message>
    <message id="qelctl-run-yes-and-no">
        <source></source>
        <translation>--yes und --no-input schließen einander aus.</translation>
    </message>
    <message id="qelctl-run-no-such-format">
        <source></source>
        <translation>--format erwartet table, plate, csv oder json, nicht „%1“.</translation>
    </message>
    <message id="qelctl-run-no-plate">
        <source></source>
        <translation>Das Ergebnis von %1 ist keine Platte. Benutzen Sie --format table oder json.</translation>
    </message>
    <message id="qelctl-prompt">
        <source></source>
        <translation>%1 [Eingabetaste: erledigt, n: abbrechen]</translation>
    </message>
    <message id="qelctl-prompt-no-terminal">
        <source></source>
        <translation>Hier kann niemand gefragt werden. Bestätigen Sie im Voraus mit --yes.</translation>
    </message>
    <message id="qelctl-doctor-summary">
        <source></source>
        <translation>Sagen, warum Plugin-Dateien brauchbare Treiber sind oder nicht</translation>
    </message>
    <message id="qelctl-doctor-details">
        <source></source>
        <translation>Sagt von der Datei PFAD, oder von jeder darunter, ob sie ein brauchbares Treiber-Plugin ist, und wenn
nicht, warum und was zu tun ist. Diese Dateien werden nicht geladen.

Ohne PFAD werden die Ordner untersucht, in denen das Werkzeug Treiber sucht, und die Plugins
dort in einem eigenen Prozess geladen, um zu sagen, welche Treiber sie enthalten und welcher einen
anderen ersetzt.

Rückgabewerte: 0 alles ist brauchbar, 1 etwas ist es nicht, 2 falscher Aufruf.</translation>
    </message>
    <message id="qelctl-doctor-argument">
        <source></source>
        <translation>Eine Plugin-Datei oder ein Ordner mit solchen.</translation>
    </message>
    <message id="qelctl-doctor-usable">
        <source></source>
        <translation>brauchbar</translation>
    </message>
    <message id="qelctl-doctor-usable-with-warnings">
        <source></source>
        <translation>brauchbar, mit Warnungen</translation>
    </message>
    <message id="qelctl-doctor-not-usable">
        <source></source>
        <translation>nicht brauchbar</translation>
    </message>
    <message id="qelctl-doctor-folder">
        <source></source>
        <translation>Ordner %1:</translation>
    </message>
    <message id="qelctl-doctor-no-folder">
        <source></source>
        <translation>Ordner %1: gibt es nicht</translation>
    </message>
    <message id="qelctl-doctor-empty-folder">
        <source></source>
        <translation>Ordner %1: enthält keine Plugin-Dateien</translation>
    </message>
    <message id="qelctl-check-summary">
        <source></source>
        <translation>Ein Treiber-Plugin an den Regeln für Treiber messen</translation>
    </message>
    <message id="qelctl-check-details">
        <source></source>
        <translation>Lädt PLUGIN und beurteilt Regel für Regel, ob sein Treiber sich an seinen Vertrag hält. Was eine Regel
sagt, warum, und was zu tun ist, steht bei jedem Verstoß. Das Plugin läuft in einem eigenen Prozess.

Der Rückgabewert ist 0, wenn keine Regel verletzt ist, 1, wenn eine es ist, und 9, wenn keine es ist, aber
nicht alles beurteilt werden konnte: Das Gerät fehlt, oder eine Funktion gelang nie. Absichtlich ausgelassene
Regeln zählen nicht.</translation>
    </message>
    <message id="qelctl-check-argument">
        <source></source>
        <translation>Eine Plugin-Datei.</translation>
    </message>
    <message id="qelctl-check-option-driver">
        <source></source>
        <translation>Der Treiber, um den es geht; nötig, wo PLUGIN mehrere hat.</translation>
    </message>
    <message id="qelctl-check-option-device">
        <source></source>
        <translation>Das Gerät, mit dem der Treiber geprüft wird; sonst das erste.</translation>
    </message>
    <message id="qelctl-check-option-rule">
        <source></source>
        <translation>Nur Regel N beurteilen. Darf mehrmals angegeben werden.</translation>
    </message>
    <message id="qelctl-check-option-isolated">
        <source></source>
        <translation>Den Treiber so beurteilen, wie Anwendungen ihn sehen, wenn er isoliert ist: von außerhalb seines Prozesses.</translation>
    </message>
    <message id="qelctl-check-option-unsafe">
        <source></source>
        <translation>Auch beurteilen, was Teile des Geräts bewegt.</translation>
    </message>
    <message id="qelctl-check-option-yes">
        <source></source>
        <translation>Aufträge an den Benutzer sofort bestätigen; sonst wird gefragt, wer am Terminal sitzt, und ohne Terminal abgelehnt.</translation>
    </message>
    <message id="qelctl-check-option-guided">
        <source></source>
        <translation>Auch beurteilen, wozu es Hände braucht: bitten, den Stecker des Geräts zu ziehen, ihn wieder einzustecken und eine Platte zu bewegen.</translation>
    </message>
    <message id="qelctl-check-option-run-limit">
        <source></source>
        <translation>Wie lange ein Lauf dauern darf, ohne dass sein Fortschritt steigt; ohne Angabe 120 s.</translation>
    </message>
    <message id="qelctl-check-option-soak">
        <source></source>
        <translation>Stattdessen das Gerät so lange wie DURATION, etwa 90s, 10m oder 2h, in zufälligen Folgen aufrufen und eine Folge, die einen Fehler zeigt, so kurz wie möglich machen.</translation>
    </message>
    <message id="qelctl-check-option-seed">
        <source></source>
        <translation>Der Startwert der zufälligen Folgen, um sie zu wiederholen; der Bericht nennt ihn.</translation>
    </message>
    <message id="qelctl-check-option-format">
        <source></source>
        <translation>Wie der Bericht ausgegeben wird; ohne Angabe als Text.</translation>
    </message>
    <message id="qelctl-check-no-such-rule">
        <source></source>
        <translation>Die Regel „%1“ gibt es nicht. Siehe docs/conformance-rules.md.</translation>
    </message>
    <message id="qelctl-check-no-such-limit">
        <source></source>
        <translation>„%1“ ist keine Grenze. Geben Sie ganze Sekunden an, von 1 bis 86400.</translation>
    </message>
    <message id="qelctl-check-nobody-there">
        <source></source>
        <translation>--guided bittet jemanden am Gerät, es auszustecken und dergleichen. Rufen Sie es an einem Terminal auf.</translation>
    </message>
    <message id="qelctl-check-ask">
        <source></source>
        <translation>%1 Erledigt? [J/n]</translation>
    </message>
    <message id="qelctl-check-not-in-soak">
        <source></source>
        <translation>--%1 und --soak schließen sich aus: --soak versucht Folgen statt Regeln und gibt Text aus. Lassen Sie eines von beiden weg.</translation>
    </message>
    <message id="qelctl-check-no-such-duration">
        <source></source>
        <translation>„%1“ ist keine Dauer. Geben Sie etwa 90s, 10m oder 2h an.</translation>
    </message>
    <message id="qelctl-check-no-such-seed">
        <source></source>
        <translation>„%1“ ist kein Startwert. Geben Sie eine ganze Zahl an.</translation>
    </message>
    <message id="qelctl-check-no-such-format">
        <source></source>
        <translation>Das Format „%1“ gibt es nicht. Möglich sind text, json und junit.</translation>
    </message>
    <message id="qelctl-check-no-isolation">
        <source></source>
        <translation>Das Treiber-Plugin „isolation.so“ ist in keinem der Plugin-Ordner; es kommt mit qeldevicesd.</translation>
    </message>
    <message id="qelctl-check-no-file">
        <source></source>
        <translation>Die Datei „%1“ gibt es nicht.</translation>
    </message>
    <message id="qelctl-new-driver-summary">
        <source></source>
        <translation>Den Anfang eines Treibers schreiben</translation>
    </message>
    <message id="qelctl-new-driver-details">
        <source></source>
        <translation>Schreibt einen kleinen Treiber namens NAME nach ORDNER; der Ordner muss leer sein oder noch fehlen. Der Treiber lässt sich
übersetzen und hält die Regeln ein; nur das Protokoll Ihres Geräts kennt er nicht. Suchen Sie in den Quellen nach PROTOCOL.</translation>
    </message>
    <message id="qelctl-new-driver-argument-name">
        <source></source>
        <translation>Der Name des Treibers: Kleinbuchstaben, Ziffern, - und _.</translation>
    </message>
    <message id="qelctl-new-driver-argument-directory">
        <source></source>
        <translation>Wohin er geschrieben wird; ohne Angabe nach NAME.</translation>
    </message>
    <message id="qelctl-new-driver-option-link">
        <source></source>
        <translation>Wie der Treiber sein Gerät erreicht: none (er spielt eins), serial oder tcp; die letzten beiden mit einem Emulator des Geräts.</translation>
    </message>
    <message id="qelctl-new-driver-no-link">
        <source></source>
        <translation>Eine Verbindung „%1“ gibt es nicht; es gibt none, serial und tcp.</translation>
    </message>
    <message id="qelctl-new-driver-no-name">
        <source></source>
        <translation>„%1“ kann kein Treiber heißen. Erlaubt sind ein Kleinbuchstabe, dann Kleinbuchstaben, Ziffern, - und _, aber kein Name, den CMake selbst braucht, wie etwa test.</translation>
    </message>
    <message id="qelctl-new-driver-not-empty">
        <source></source>
        <translation>Der Ordner „%1“ ist nicht leer. Nennen Sie einen anderen.</translation>
    </message>
    <message id="qelctl-new-driver-no-folder">
        <source></source>
        <translation>Der Ordner „%1“ lässt sich nicht anlegen.</translation>
    </message>
    <message id="qelctl-new-driver-cannot-write">
        <source></source>
        <translation>„%1“ lässt sich nicht schreiben: %2.</translation>
    </message>
    <message id="qelctl-new-driver-done">
        <source></source>
        <translation>In „%1“ steht ein Treiber. So übersetzen und prüfen Sie ihn:

    cmake -S %1 -B %1/build
    cmake --build %1/build
    qelctl check --unsafe %1/build/devicedrivers/%2.so

Dann setzen Sie Ihr Protokoll dort ein, wo in den Quellen PROTOCOL steht.
</translation>
    </message>
    <message id="qelctl-network-missing">
        <source></source>
        <translation>Für Geräte an anderen Rechnern ist der Treiber „Network“ nötig, der nicht installiert ist.</translation>
    </message>
    <message id="qelctl-argument-invitation">
        <source></source>
        <translation>Die Datei, die „qeldevicesd invite“ ausgegeben hat.</translation>
    </message>
    <message id="qelctl-connect-option-local">
        <source></source>
        <translation>Verbindet mit dem Server dieses Rechners, der keine Einladung braucht.</translation>
    </message>
    <message id="qelctl-argument-server">
        <source></source>
        <translation>Der Name des Servers, wie ihn „qelctl servers“ zeigt.</translation>
    </message>
    <message id="qelctl-connect-away">
        <source></source>
        <translation>Die Verbindung zu „%1“ ist gespeichert, aber der Server ist nicht erreichbar: %2</translation>
    </message>
    <message id="qelctl-connect-kept">
        <source></source>
        <translation>Diese Einladung ersetzt die gespeicherte Verbindung zu „%1“ nicht: %2</translation>
    </message>
    <message id="qelctl-server-away">
        <source></source>
        <translation>Der Server „%1“ ist nicht erreichbar: %2</translation>
    </message>
    <message id="qelctl-connected">
        <source></source>
        <translation>Mit „%1“ verbunden. Dort gibt es diese Geräte:</translation>
    </message>
    <message id="qelctl-no-such-server">
        <source></source>
        <translation>Es gibt keine Verbindung zu einem Server „%1“.</translation>
    </message>
    <message id="qelctl-column-server">
        <source></source>
        <translation>Server</translation>
    </message>
    <message id="qelctl-column-address">
        <source></source>
        <translation>Adresse</translation>
    </message>
    <message id="qelctl-server-there">
        <source></source>
        <translation>%1 Geräte</translation>
    </message>
    <message id="qelctl-connect-summary">
        <source></source>
        <translation>Geräte eines anderen Rechners benutzen</translation>
    </message>
    <message id="qelctl-connect-details">
        <source></source>
        <translation>Speichert die Einladung zu den Geräten eines anderen Rechners und listet sie auf. Sie werden von da an benutzt wie die Geräte dieses Rechners.

Auf dem anderen Rechner gibt „qeldevicesd invite NAME“ die Einladung aus. Sie enthält einen Schlüssel: Wer die Datei hat, wird eingelassen.</translation>
    </message>
    <message id="qelctl-disconnect-summary">
        <source></source>
        <translation>Geräte eines anderen Rechners nicht mehr benutzen</translation>
    </message>
    <message id="qelctl-disconnect-details">
        <source></source>
        <translation>Löscht die gespeicherte Verbindung zu einem Server. Um ihn wieder zu benutzen, ist die Einladung nötig.</translation>
    </message>
    <message id="qelctl-servers-summary">
        <source></source>
        <translation>Server auflisten, mit denen dieser Benutzer verbunden ist</translation>
    </message>
    <message id="qelctl-servers-details">
        <source></source>
        <translation>Listet die Server auf, deren Einladungen gespeichert sind, und sagt zu jedem, wie viele Geräte er hat oder warum er nicht erreichbar ist.</translation>
    </message>
    <message id="qelctl-column-result">
        <source></source>
        <translation>Ergebnis</translation>
    </message>
    <message id="qelctl-no-such-result">
        <source></source>
        <translation>Kein Server hat für Sie ein Ergebnis „%1“ aufbewahrt.</translation>
    </message>
    <message id="qelctl-argument-result">
        <source></source>
        <translation>Ein Ergebnis, wie „qelctl results“ es auflistet. Ohne Angabe werden alle aufgelistet.</translation>
    </message>
    <message id="qelctl-results-option-output">
        <source></source>
        <translation>Schreibt das Ergebnis in FILE. Vorgabe: Standardausgabe.</translation>
    </message>
    <message id="qelctl-results-summary">
        <source></source>
        <translation>Ergebnisse auflisten und holen, die nicht angekommen sind</translation>
    </message>
    <message id="qelctl-results-details">
        <source></source>
        <translation>Ein Server bewahrt das Ergebnis eines Laufs auf, dessen Verbindung abriss, bevor das Ergebnis ankam. Listet auf, was die Server für Sie aufbewahren; mit RESULT wird dieses Ergebnis so ausgegeben, wie „qelctl run --format json“ es getan hätte.

Die Ergebnisse bleiben auf dem Server.</translation>
    </message>
    <message id="qelctl-column-feature">
        <source></source>
        <translation>Funktion</translation>
    </message>
</context>
</TS>
