<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name></name>
    <message id="The file is damaged: %1.">
        <source></source>
        <translation>Die Datei ist beschädigt: %1.</translation>
    </message>
    <message id="Copy or build it again.">
        <source></source>
        <translation>Kopieren oder bauen Sie sie neu.</translation>
    </message>
    <message id="Move it out of the plugin folder: every file there is tried as a driver.">
        <source></source>
        <translation>Verschieben Sie sie aus dem Plugin-Ordner: Jede Datei dort wird als Treiber versucht.</translation>
    </message>
    <message id="a processor of kind %1">
        <source></source>
        <translation>ein Prozessor der Art %1</translation>
    </message>
    <message id="There is no such file.">
        <source></source>
        <translation>Diese Datei gibt es nicht.</translation>
    </message>
    <message id="Check the path.">
        <source></source>
        <translation>Prüfen Sie den Pfad.</translation>
    </message>
    <message id="The file cannot be read: %1.">
        <source></source>
        <translation>Die Datei ist nicht lesbar: %1.</translation>
    </message>
    <message id="Let the user who runs the application read the file and enter its folders.">
        <source></source>
        <translation>Geben Sie dem Benutzer, der die Anwendung ausführt, das Recht, die Datei zu lesen und ihre Ordner zu betreten.</translation>
    </message>
    <message id="It is not an ordinary file.">
        <source></source>
        <translation>Sie ist keine gewöhnliche Datei.</translation>
    </message>
    <message id="it is empty">
        <source></source>
        <translation>sie ist leer</translation>
    </message>
    <message id="It is made for %1.">
        <source></source>
        <translation>Sie ist für %1 gemacht.</translation>
    </message>
    <message id="Install the driver that is made for Linux.">
        <source></source>
        <translation>Installieren Sie den Treiber, der für Linux gemacht ist.</translation>
    </message>
    <message id="It is not a shared library.">
        <source></source>
        <translation>Sie ist keine dynamische Bibliothek.</translation>
    </message>
    <message id="it ends within its header">
        <source></source>
        <translation>sie endet mitten in ihrem Kopf</translation>
    </message>
    <message id="It is made for another kind of computer: %1 (%2-bit, %3-endian); this one takes %4.">
        <source></source>
        <translation>Sie ist für eine andere Art von Rechner gemacht: %1 (%2 Bit, %3-endian); dieser hier braucht %4.</translation>
    </message>
    <message id="Install the driver that is made for %1.">
        <source></source>
        <translation>Installieren Sie den Treiber, der für %1 gemacht ist.</translation>
    </message>
    <message id="its header names an unknown format">
        <source></source>
        <translation>ihr Kopf nennt ein unbekanntes Format</translation>
    </message>
    <message id="It is a program, not a shared library.">
        <source></source>
        <translation>Sie ist ein Programm, keine dynamische Bibliothek.</translation>
    </message>
    <message id="It is an object file that was never linked.">
        <source></source>
        <translation>Sie ist eine Objektdatei, die nie gebunden wurde.</translation>
    </message>
    <message id="its header does not say what to load">
        <source></source>
        <translation>ihr Kopf sagt nicht, was zu laden ist</translation>
    </message>
    <message id="its header describes no valid table of sections">
        <source></source>
        <translation>ihr Kopf beschreibt keine gültige Tabelle der Abschnitte</translation>
    </message>
    <message id="it ends before the table of what to load">
        <source></source>
        <translation>sie endet vor der Tabelle dessen, was zu laden ist</translation>
    </message>
    <message id="it has %1 bytes and says that it has more">
        <source></source>
        <translation>sie hat %1 Bytes und gibt an, mehr zu haben</translation>
    </message>
    <message id="what it wants loaded does not fit into memory">
        <source></source>
        <translation>was sie geladen haben will, passt nicht in den Speicher</translation>
    </message>
    <message id="it holds nothing that could be loaded">
        <source></source>
        <translation>sie enthält nichts, was sich laden ließe</translation>
    </message>
    <message id="its table of dependent libraries cannot be read">
        <source></source>
        <translation>die Tabelle der Bibliotheken, die sie braucht, ist nicht lesbar</translation>
    </message>
    <message id="its table of dependent libraries makes no sense">
        <source></source>
        <translation>die Tabelle der Bibliotheken, die sie braucht, ergibt keinen Sinn</translation>
    </message>
    <message id="the name of a dependent library cannot be read">
        <source></source>
        <translation>der Name einer Bibliothek, die sie braucht, ist nicht lesbar</translation>
    </message>
    <message id="It holds only the debugging information of a library.">
        <source></source>
        <translation>Sie enthält nur die Angaben einer Bibliothek zur Fehlersuche.</translation>
    </message>
    <message id="it ends before its plugin metadata">
        <source></source>
        <translation>sie endet vor ihren Plugin-Metadaten</translation>
    </message>
    <message id="its plugin metadata has an absurd size">
        <source></source>
        <translation>die Größe ihrer Plugin-Metadaten ist unsinnig</translation>
    </message>
    <message id="it ends before its table of sections">
        <source></source>
        <translation>sie endet vor der Tabelle ihrer Abschnitte</translation>
    </message>
    <message id="If it is a driver&#x27;s helper library, move it out of the plugin folder; if it is a driver, give its root class Q_PLUGIN_METADATA.">
        <source></source>
        <translation>Ist sie die Hilfsbibliothek eines Treibers, verschieben Sie sie aus dem Plugin-Ordner; ist sie ein Treiber, braucht ihre Wurzelklasse Q_PLUGIN_METADATA.</translation>
    </message>
    <message id="It is built for Qt %1, this library uses Qt %2.">
        <source></source>
        <translation>Sie ist für Qt %1 gebaut, diese Bibliothek verwendet Qt %2.</translation>
    </message>
    <message id="Install the driver that is built for Qt %1.%2, or build it again.">
        <source></source>
        <translation>Installieren Sie den Treiber, der für Qt %1.%2 gebaut ist, oder bauen Sie ihn neu.</translation>
    </message>
    <message id="5.12 or older">
        <source></source>
        <translation>5.12 oder älter</translation>
    </message>
    <message id="It is a shared library, but not a Qt plugin.">
        <source></source>
        <translation>Sie ist eine dynamische Bibliothek, aber kein Qt-Plugin.</translation>
    </message>
    <message id="Its Qt plugin metadata is of an unknown form.">
        <source></source>
        <translation>Ihre Qt-Plugin-Metadaten haben eine unbekannte Form.</translation>
    </message>
    <message id="Its Qt plugin metadata is damaged.">
        <source></source>
        <translation>Ihre Qt-Plugin-Metadaten sind beschädigt.</translation>
    </message>
    <message id="If it is a driver, give its root class Q_PLUGIN_METADATA(IID QelDevicePlugin_iid ...) and Q_INTERFACES(qel::devices::DevicePlugin).">
        <source></source>
        <translation>Ist sie ein Treiber, braucht ihre Wurzelklasse Q_PLUGIN_METADATA(IID QelDevicePlugin_iid ...) und Q_INTERFACES(qel::devices::DevicePlugin).</translation>
    </message>
    <message id="Install it where it belongs; if it is a driver, give its root class Q_PLUGIN_METADATA(IID QelDevicePlugin_iid ...) and Q_INTERFACES(qel::devices::DevicePlugin).">
        <source></source>
        <translation>Installieren Sie sie dort, wo sie hingehört; ist sie ein Treiber, braucht ihre Wurzelklasse Q_PLUGIN_METADATA(IID QelDevicePlugin_iid ...) und Q_INTERFACES(qel::devices::DevicePlugin).</translation>
    </message>
    <message id="Its metadata names the interface &quot;%1&quot;; that of drivers is &quot;%2&quot;.">
        <source></source>
        <translation>Ihre Metadaten nennen die Schnittstelle „%1“; die der Treiber ist „%2“.</translation>
    </message>
    <message id="Its metadata names the right interface, but its root class does not implement it.">
        <source></source>
        <translation>Ihre Metadaten nennen die richtige Schnittstelle, aber ihre Wurzelklasse implementiert sie nicht.</translation>
    </message>
    <message id="Its metadata lacks the string %1; applications will see it empty.">
        <source></source>
        <translation>Ihren Metadaten fehlt die Zeichenkette %1; Anwendungen sehen sie leer.</translation>
    </message>
    <message id="Add it to the driver&#x27;s metadata file and build it again.">
        <source></source>
        <translation>Ergänzen Sie die Metadaten-Datei des Treibers und bauen Sie ihn neu.</translation>
    </message>
    <message id="It needs the library %1, which is not installed.">
        <source></source>
        <translation>Sie braucht die Bibliothek %1, und die ist nicht installiert.</translation>
    </message>
    <message id="It needs the library %1, which %2 needs, which is not installed.">
        <source></source>
        <translation>Sie braucht über %2 die Bibliothek %1, und die ist nicht installiert.</translation>
    </message>
    <message id="Install the package that holds %1, or put the library where the driver looks for it.">
        <source></source>
        <translation>Installieren Sie das Paket, das %1 enthält, oder legen Sie die Bibliothek dorthin, wo der Treiber sie sucht.</translation>
    </message>
    <message id="It needs &quot;%2&quot;, which the installed %3 does not have.">
        <source></source>
        <translation>Sie braucht „%2“, und das installierte %3 hat es nicht.</translation>
    </message>
    <message id="%1 needs &quot;%2&quot;, which the installed %3 does not have.">
        <source></source>
        <translation>%1 braucht „%2“, und das installierte %3 hat es nicht.</translation>
    </message>
    <message id="Build the driver on this system, or install a newer version of the library.">
        <source></source>
        <translation>Bauen Sie den Treiber auf diesem System, oder installieren Sie eine neuere Version der Bibliothek.</translation>
    </message>
    <message id="It is a link to the folder %1; linked folders are not searched for drivers.">
        <source></source>
        <translation>Sie ist ein Verweis auf den Ordner %1; in verwiesenen Ordnern werden keine Treiber gesucht.</translation>
    </message>
    <message id="Link or copy the plugin files one by one.">
        <source></source>
        <translation>Verweisen Sie auf jede Plugin-Datei einzeln, oder kopieren Sie sie.</translation>
    </message>
    <message id="It is a link to %1, which does not exist.">
        <source></source>
        <translation>Sie ist ein Verweis auf %1, und das gibt es nicht.</translation>
    </message>
    <message id="Remove the link, or install what it points to.">
        <source></source>
        <translation>Entfernen Sie den Verweis, oder installieren Sie, worauf er zeigt.</translation>
    </message>
    <message id="The folder cannot be read.">
        <source></source>
        <translation>Der Ordner ist nicht lesbar.</translation>
    </message>
    <message id="Let the user who runs the application read and enter the folder.">
        <source></source>
        <translation>Geben Sie dem Benutzer, der die Anwendung ausführt, das Recht, den Ordner zu lesen und zu betreten.</translation>
    </message>
    <message id="It is hidden, and hidden files and folders are not searched for drivers.">
        <source></source>
        <translation>Sie ist versteckt, und in versteckten Dateien und Ordnern werden keine Treiber gesucht.</translation>
    </message>
    <message id="Give it, and the folders it is in, names without a leading dot.">
        <source></source>
        <translation>Geben Sie ihr und den Ordnern, in denen sie liegt, Namen ohne Punkt am Anfang.</translation>
    </message>
    <message id="It seems to be the same driver as %1, which is loaded after it and then takes its place.">
        <source></source>
        <translation>Sie ist wohl derselbe Treiber wie %1; dieser wird nach ihr geladen und tritt dann an ihre Stelle.</translation>
    </message>
    <message id="Remove one of the two.">
        <source></source>
        <translation>Entfernen Sie einen der beiden.</translation>
    </message>
    <message id="it did not come back within %1 ms">
        <source></source>
        <translation>sie kam binnen %1 ms nicht zurück</translation>
    </message>
    <message id="the process was ended by exit(%1)">
        <source></source>
        <translation>der Prozess wurde mit exit(%1) beendet</translation>
    </message>
    <message id="the process ended with signal %1 (%2)">
        <source></source>
        <translation>der Prozess endete mit Signal %1 (%2)</translation>
    </message>
    <message id="the process sent something that is no message">
        <source></source>
        <translation>der Prozess sendete etwas, das keine Nachricht ist</translation>
    </message>
    <message id="the process could not be started">
        <source></source>
        <translation>der Prozess ließ sich nicht starten</translation>
    </message>
    <message id="it is no driver, or something that it needs is missing">
        <source></source>
        <translation>sie ist kein Treiber, oder etwas fehlt, das sie braucht</translation>
    </message>
    <message id="%1, after the call %2">
        <source></source>
        <translation>%1, nach dem Aufruf %2</translation>
    </message>
    <message id="the process did not come back">
        <source></source>
        <translation>der Prozess kam nicht zurück</translation>
    </message>
    <message id="It does not load: %1.">
        <source></source>
        <translation>Sie lässt sich nicht laden: %1.</translation>
    </message>
    <message id="It loads, but when its driver &quot;%1&quot; is asked for its instruments: %2.">
        <source></source>
        <translation>Sie lässt sich laden, aber wenn ihr Treiber „%1“ nach seinen Geräten gefragt wird: %2.</translation>
    </message>
    <message id="Report this to the maker of the driver; until then move the file out of the plugin folder.">
        <source></source>
        <translation>Melden Sie das dem Hersteller des Treibers; verschieben Sie die Datei bis dahin aus dem Plugin-Ordner.</translation>
    </message>
    <message id="It could not be tried what loading it does.">
        <source></source>
        <translation>Was beim Laden geschieht, ließ sich nicht ausprobieren.</translation>
    </message>
    <message id="Mend what is said of the other files and ask again.">
        <source></source>
        <translation>Beheben Sie, was zu den anderen Dateien gesagt wird, und fragen Sie noch einmal.</translation>
    </message>
    <message id="It loads, but registers no driver.">
        <source></source>
        <translation>Sie lässt sich laden, meldet aber keinen Treiber an.</translation>
    </message>
    <message id="Have registerDrivers() call DeviceBroker::addDriver().">
        <source></source>
        <translation>Rufen Sie in registerDrivers() DeviceBroker::addDriver() auf.</translation>
    </message>
    <message id="Its driver &quot;%1&quot; is replaced by the one of %2.">
        <source></source>
        <translation>Ihr Treiber „%1“ wird durch den von %2 ersetzt.</translation>
    </message>
</context>
</TS>
