<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name></name>
    <message id="passed">
        <source></source>
        <translation>erfüllt</translation>
    </message>
    <message id="failed">
        <source></source>
        <translation>verletzt</translation>
    </message>
    <message id="warning">
        <source></source>
        <translation>Warnung</translation>
    </message>
    <message id="not applicable">
        <source></source>
        <translation>entfällt</translation>
    </message>
    <message id="not run">
        <source></source>
        <translation>nicht geprüft</translation>
    </message>
    <message id="seen:   %1">
        <source></source>
        <translation>gesehen: %1</translation>
    </message>
    <message id="why:    %1">
        <source></source>
        <translation>Grund:   %1</translation>
    </message>
    <message id="remedy: %1">
        <source></source>
        <translation>Abhilfe: %1</translation>
    </message>
    <message id="signals of the device:">
        <source></source>
        <translation>Signale des Geräts:</translation>
    </message>
    <message id="%1 to %2">
        <source></source>
        <translation>%1 bis %2</translation>
    </message>
    <message id="succeeded %1 times">
        <source></source>
        <translation>%1-mal gelungen</translation>
    </message>
    <message id="not judged: firmware is never written">
        <source></source>
        <translation>nicht beurteilt: Firmware wird nie geschrieben</translation>
    </message>
    <message id="not judged: running it moves parts of the instrument">
        <source></source>
        <translation>nicht beurteilt: ein Lauf bewegt Teile des Geräts</translation>
    </message>
    <message id="NOT JUDGED: it was never run to its end">
        <source></source>
        <translation>NICHT BEURTEILT: kein Lauf kam zu seinem Ende</translation>
    </message>
    <message id="NOT JUDGED: none of %1 runs succeeded, the last error was %2">
        <source></source>
        <translation>NICHT BEURTEILT: keiner von %1 Läufen ist gelungen, der letzte Fehler war %2</translation>
    </message>
    <message id="%1 rules hold, %2 failed, %3 warnings, %4 not applicable, %5 not run">
        <source></source>
        <translation>%1 Regeln erfüllt, %2 verletzt, %3 Warnungen, %4 entfallen, %5 nicht geprüft</translation>
    </message>
    <message id="What the instrument did">
        <source></source>
        <translation>Was das Gerät getan hat</translation>
    </message>
    <message id="What was not judged">
        <source></source>
        <translation>Was nicht beurteilt wurde</translation>
    </message>
    <message id="Without --unsafe nothing that moves was run: no measurement and no calibration, and none of their values was%1seen. Prepare the instrument and check with --unsafe to have them judged.">
        <source></source>
        <translation>Ohne --unsafe wurde nichts ausgeführt, was etwas bewegt: keine Messung und keine Kalibrierung, und keiner%1ihrer Werte wurde gesehen. Um sie beurteilen zu lassen, bereiten Sie das Gerät vor und prüfen Sie mit --unsafe.</translation>
    </message>
    <message id="INCOMPLETE: no rule is broken, but what is named above was not judged.">
        <source></source>
        <translation>UNVOLLSTÄNDIG: Keine Regel ist verletzt, aber was oben genannt ist, wurde nicht beurteilt.</translation>
    </message>
    <message id="Plugin file">
        <source></source>
        <translation>Plugin-Datei</translation>
    </message>
    <message id="Driver and enumeration">
        <source></source>
        <translation>Treiber und Aufzählung</translation>
    </message>
    <message id="Identity">
        <source></source>
        <translation>Identität</translation>
    </message>
    <message id="Open and close">
        <source></source>
        <translation>Öffnen und Schließen</translation>
    </message>
    <message id="Feature table">
        <source></source>
        <translation>Tabelle der Funktionen</translation>
    </message>
    <message id="Execution">
        <source></source>
        <translation>Ausführung</translation>
    </message>
    <message id="Requests for action">
        <source></source>
        <translation>Aufträge an den Benutzer</translation>
    </message>
    <message id="Errors">
        <source></source>
        <translation>Fehler</translation>
    </message>
    <message id="Life cycle">
        <source></source>
        <translation>Lebenslauf</translation>
    </message>
    <message id="Time and threads">
        <source></source>
        <translation>Zeit und Threads</translation>
    </message>
    <message id="Results">
        <source></source>
        <translation>Ergebnisse</translation>
    </message>
    <message id="Configurations">
        <source></source>
        <translation>Konfigurationen</translation>
    </message>
    <message id="Surroundings">
        <source></source>
        <translation>Umgebung</translation>
    </message>
    <message id="The file loads as a Qt plugin whose root object implements DevicePlugin.">
        <source></source>
        <translation>Die Datei lässt sich als Qt-Plugin laden, dessen Wurzelobjekt DevicePlugin implementiert.</translation>
    </message>
    <message id="The plugin names the interface id of driver plugins in its metadata.">
        <source></source>
        <translation>Das Plugin nennt in seinen Metadaten die Schnittstellen-Kennung der Treiber-Plugins.</translation>
    </message>
    <message id="The metadata gives manufacturer, url, resource-id and version as non-empty strings, and the url is an absolute address.">
        <source></source>
        <translation>Die Metadaten geben manufacturer, url, resource-id und version als nicht leere Zeichenketten an, und url ist eine absolute Adresse.</translation>
    </message>
    <message id="registerDrivers() registers at least one driver.">
        <source></source>
        <translation>registerDrivers() meldet mindestens einen Treiber an.</translation>
    </message>
    <message id="registerDrivers() can be called again and registers the same names.">
        <source></source>
        <translation>registerDrivers() lässt sich noch einmal aufrufen und meldet dieselben Namen an.</translation>
    </message>
    <message id="The plugin carries the catalogues plugin_en.qm and plugin_de.qm in a folder below &quot;:/qel/devices&quot;.">
        <source></source>
        <translation>Das Plugin enthält die Kataloge plugin_en.qm und plugin_de.qm in einem Ordner unterhalb von „:/qel/devices“.</translation>
    </message>
    <message id="All catalogues of the plugin translate the same ids.">
        <source></source>
        <translation>Alle Kataloge des Plugins übersetzen dieselben Kennungen.</translation>
    </message>
    <message id="name() is not empty and never changes.">
        <source></source>
        <translation>name() ist nicht leer und ändert sich nie.</translation>
    </message>
    <message id="The driver field of every record equals name().">
        <source></source>
        <translation>Das Feld driver jedes Eintrags ist gleich name().</translation>
    </message>
    <message id="No two records are equal.">
        <source></source>
        <translation>Keine zwei Einträge sind gleich.</translation>
    </message>
    <message id="Two enumerations yield the same records when nothing was plugged in or out.">
        <source></source>
        <translation>Zwei Aufzählungen liefern dieselben Einträge, wenn nichts ein- oder ausgesteckt wurde.</translation>
    </message>
    <message id="Enumeration leaves an open device alone.">
        <source></source>
        <translation>Die Aufzählung lässt ein geöffnetes Gerät in Ruhe.</translation>
    </message>
    <message id="An instrument that is open stays in the list.">
        <source></source>
        <translation>Ein geöffnetes Gerät bleibt in der Liste.</translation>
    </message>
    <message id="Enumeration leaves a run in progress alone.">
        <source></source>
        <translation>Die Aufzählung stört keinen Lauf.</translation>
    </message>
    <message id="A new device has no parent and is closed, idle, without error and without features.">
        <source></source>
        <translation>Ein neues Gerät hat kein Elternobjekt und ist geschlossen, untätig, ohne Fehler und ohne Funktionen.</translation>
    </message>
    <message id="The identity of a new device equals the record it was created for.">
        <source></source>
        <translation>Die Identität eines neuen Geräts ist gleich dem Eintrag, zu dem es erzeugt wurde.</translation>
    </message>
    <message id="createDevice() returns a new object on every call.">
        <source></source>
        <translation>createDevice() liefert bei jedem Aufruf ein neues Objekt.</translation>
    </message>
    <message id="createDevice() returns null for a record at a location that the driver does not know.">
        <source></source>
        <translation>createDevice() liefert null für einen Eintrag an einem Ort, den der Treiber nicht kennt.</translation>
    </message>
    <message id="A device emits nothing until it is used.">
        <source></source>
        <translation>Ein Gerät sendet nichts, bevor es benutzt wird.</translation>
    </message>
    <message id="Devices of different instruments have nothing to do with each other.">
        <source></source>
        <translation>Verschiedene Geräte haben nichts miteinander zu tun.</translation>
    </message>
    <message id="open() ends within 10 s: true and one openChanged(true) without an error, or an error with the device closed, which has been set already when open() returns false.">
        <source></source>
        <translation>open() endet binnen 10 s: mit true und einem openChanged(true) ohne Fehler, oder mit einem Fehler und geschlossenem Gerät; liefert open() false, ist der Fehler schon gesetzt.</translation>
    </message>
    <message id="Features and descriptors stand when openChanged(true) is emitted, and in any case 2 s later.">
        <source></source>
        <translation>Funktionen und Deskriptoren stehen fest, wenn openChanged(true) gesendet wird, und jedenfalls 2 s später.</translation>
    </message>
    <message id="open() of an open device returns true and emits nothing.">
        <source></source>
        <translation>open() auf einem offenen Gerät liefert true und sendet nichts.</translation>
    </message>
    <message id="close() ends within 10 s in a closed, idle device: one openChanged(false), and no new error.">
        <source></source>
        <translation>close() endet binnen 10 s mit einem geschlossenen, untätigen Gerät: ein openChanged(false) und kein neuer Fehler.</translation>
    </message>
    <message id="A closed device emits nothing more.">
        <source></source>
        <translation>Ein geschlossenes Gerät sendet nichts mehr.</translation>
    </message>
    <message id="close() of a closed device does nothing.">
        <source></source>
        <translation>close() auf einem geschlossenen Gerät tut nichts.</translation>
    </message>
    <message id="close() while the device is opening withdraws the open().">
        <source></source>
        <translation>close() während des Öffnens nimmt das open() zurück.</translation>
    </message>
    <message id="A device that is opened again after close() has the same features and descriptors.">
        <source></source>
        <translation>Ein Gerät, das nach close() wieder geöffnet wird, hat dieselben Funktionen und Deskriptoren.</translation>
    </message>
    <message id="An error outlives close() and is cleared by the next open().">
        <source></source>
        <translation>Ein Fehler überdauert close() und wird vom nächsten open() gelöscht.</translation>
    </message>
    <message id="An instrument that has opened opens again, as often as one likes, also when the device before was deleted while it was open.">
        <source></source>
        <translation>Ein Gerät, das sich öffnen ließ, lässt sich beliebig oft wieder öffnen, auch nachdem das vorige Objekt in geöffnetem Zustand gelöscht wurde.</translation>
    </message>
    <message id="close() and open() leave the stored configurations as they are.">
        <source></source>
        <translation>close() und open() lassen die gespeicherten Konfigurationen, wie sie sind.</translation>
    </message>
    <message id="An open device offers at least one feature, and never DF_None.">
        <source></source>
        <translation>Ein offenes Gerät bietet mindestens eine Funktion und niemals DF_None.</translation>
    </message>
    <message id="Descriptors hold the documented keys with the documented types.">
        <source></source>
        <translation>Deskriptoren enthalten die dokumentierten Schlüssel mit den dokumentierten Typen.</translation>
    </message>
    <message id="Settings name a registered type, and their defaults, limits and choices fit it.">
        <source></source>
        <translation>Einstellungen nennen einen registrierten Typ, und ihre Vorgaben, Grenzen und Auswahlwerte passen dazu.</translation>
    </message>
    <message id="Each execute() has exactly one ending, which names its feature.">
        <source></source>
        <translation>Jedes execute() hat genau ein Ende, und dieses nennt seine Funktion.</translation>
    </message>
    <message id="The ending is the last thing a run does: the device is idle and nothing follows.">
        <source></source>
        <translation>Das Ende ist das Letzte, was ein Lauf tut: Das Gerät ist untätig, und es folgt nichts.</translation>
    </message>
    <message id="A run that goes on after execute() keeps the device busy.">
        <source></source>
        <translation>Ein Lauf, der nach execute() weitergeht, hält das Gerät beschäftigt.</translation>
    </message>
    <message id="A run that succeeds has a result of the documented type and leaves no error.">
        <source></source>
        <translation>Ein Lauf, der gelingt, hat ein Ergebnis des dokumentierten Typs und hinterlässt keinen Fehler.</translation>
    </message>
    <message id="A run that fails has no result.">
        <source></source>
        <translation>Ein Lauf, der scheitert, hat kein Ergebnis.</translation>
    </message>
    <message id="A configuration that the descriptor forbids is refused with ERROR_DEVICE_INVALID_CONFIGURATION, and the device stays usable.">
        <source></source>
        <translation>Eine Konfiguration, die der Deskriptor verbietet, wird mit ERROR_DEVICE_INVALID_CONFIGURATION abgelehnt, und das Gerät bleibt brauchbar.</translation>
    </message>
    <message id="Starting a run clears an older error.">
        <source></source>
        <translation>Der Beginn eines Laufs löscht einen älteren Fehler.</translation>
    </message>
    <message id="A run leaves the stored configuration and the descriptor as they are.">
        <source></source>
        <translation>Ein Lauf lässt die gespeicherte Konfiguration und den Deskriptor, wie sie sind.</translation>
    </message>
    <message id="Measurements and calibration report a progress from 0 to 1 that never falls and is 1 before a success.">
        <source></source>
        <translation>Messungen und Kalibrierung melden einen Fortschritt von 0 bis 1, der niemals fällt und vor einem Erfolg 1 ist.</translation>
    </message>
    <message id="A second execute() while the device is busy is refused with ERROR_DEVICE_NOT_READY and an ending of its own, and the first run keeps its ending.">
        <source></source>
        <translation>Ein zweites execute() auf einem beschäftigten Gerät wird mit ERROR_DEVICE_NOT_READY und einem eigenen Ende abgelehnt, und der erste Lauf behält sein Ende.</translation>
    </message>
    <message id="A run that fails by itself says why: it sets an error.">
        <source></source>
        <translation>Ein Lauf, der von selbst scheitert, sagt warum: Er setzt einen Fehler.</translation>
    </message>
    <message id="The first progress of a run is sent when it starts, and is less than a half.">
        <source></source>
        <translation>Der erste Fortschritt eines Laufs wird zu seinem Beginn gesendet und ist kleiner als die Hälfte.</translation>
    </message>
    <message id="An idle device emits no transient values, except of plate detection.">
        <source></source>
        <translation>Ein untätiges Gerät sendet keine Zwischenwerte, außer denen der Plattenerkennung.</translation>
    </message>
    <message id="A feature stays available when it has been run.">
        <source></source>
        <translation>Eine Funktion bleibt verfügbar, nachdem sie ausgeführt wurde.</translation>
    </message>
    <message id="A receiver of executed() may start the next run at once.">
        <source></source>
        <translation>Ein Empfänger von executed() darf sofort den nächsten Lauf beginnen.</translation>
    </message>
    <message id="The text of a request is a translation id that the plugin&#x27;s catalogues resolve in English and German.">
        <source></source>
        <translation>Der Text eines Auftrags an den Benutzer ist eine Übersetzungs-Kennung, die die Kataloge des Plugins auf Englisch und Deutsch auflösen.</translation>
    </message>
    <message id="A confirmed request lets the run go on to its one ending.">
        <source></source>
        <translation>Ein bestätigter Auftrag lässt den Lauf zu seinem einen Ende weitergehen.</translation>
    </message>
    <message id="An aborted request ends the run once, with executed(feature, false), no error and the device idle.">
        <source></source>
        <translation>Ein abgelehnter Auftrag beendet den Lauf einmal, mit executed(feature, false), ohne Fehler und mit untätigem Gerät.</translation>
    </message>
    <message id="An answer to an unknown or an already answered request has no effect.">
        <source></source>
        <translation>Eine Antwort auf einen unbekannten oder schon beantworteten Auftrag bewirkt nichts.</translation>
    </message>
    <message id="A request may be answered from within its signal.">
        <source></source>
        <translation>Ein Auftrag darf schon innerhalb seines Signals beantwortet werden.</translation>
    </message>
    <message id="An open request is forgotten by close() and reset(): a late answer starts nothing.">
        <source></source>
        <translation>close() und reset() vergessen einen offenen Auftrag: Eine späte Antwort setzt nichts in Gang.</translation>
    </message>
    <message id="A calibration asks for an empty slot before it starts.">
        <source></source>
        <translation>Eine Kalibrierung verlangt, bevor sie beginnt, einen leeren Schacht.</translation>
    </message>
    <message id="Error codes are those of DeviceErrorCode.">
        <source></source>
        <translation>Fehlercodes sind solche aus DeviceErrorCode.</translation>
    </message>
    <message id="The additional information of an error is a translation id that the plugin&#x27;s catalogues resolve in English and German, or empty.">
        <source></source>
        <translation>Die Zusatzangabe eines Fehlers ist leer oder eine Übersetzungs-Kennung, die die Kataloge des Plugins auf Englisch und Deutsch auflösen.</translation>
    </message>
    <message id="close() during a run ends it once with executed(feature, false), after the flags have been cleared, without an error, and nothing follows.">
        <source></source>
        <translation>close() während eines Laufs beendet ihn einmal mit executed(feature, false), nachdem die Zustände zurückgesetzt sind, ohne Fehler, und es folgt nichts.</translation>
    </message>
    <message id="reset() during a run ends it once with executed(feature, false) and leaves the device open, idle, without error and usable.">
        <source></source>
        <translation>reset() während eines Laufs beendet ihn einmal mit executed(feature, false); das Gerät bleibt offen, untätig, ohne Fehler und brauchbar.</translation>
    </message>
    <message id="reset() of an idle open device clears the error, leaves it open and ends nothing.">
        <source></source>
        <translation>reset() auf einem untätigen offenen Gerät löscht den Fehler, lässt es offen und beendet nichts.</translation>
    </message>
    <message id="reset() of a closed device clears the error and does nothing else.">
        <source></source>
        <translation>reset() auf einem geschlossenen Gerät löscht den Fehler und tut sonst nichts.</translation>
    </message>
    <message id="update() of an open device leaves it open and emits no executed().">
        <source></source>
        <translation>update() auf einem offenen Gerät lässt es offen und sendet kein executed().</translation>
    </message>
    <message id="A device can be deleted at every stage, and emits nothing when it is.">
        <source></source>
        <translation>Ein Gerät lässt sich in jedem Zustand löschen und sendet dabei nichts.</translation>
    </message>
    <message id="A receiver may ask for the deletion of the device from within any of its signals.">
        <source></source>
        <translation>Ein Empfänger darf in jedem Signal des Geräts dessen Löschung verlangen.</translation>
    </message>
    <message id="A deleted device leaves no thread and no open file behind.">
        <source></source>
        <translation>Ein gelöschtes Gerät hinterlässt keinen Thread und keine offene Datei.</translation>
    </message>
    <message id="The process ends cleanly with the plugin loaded.">
        <source></source>
        <translation>Der Prozess endet mit geladenem Plugin sauber.</translation>
    </message>
    <message id="update() leaves a run in progress and the error alone.">
        <source></source>
        <translation>update() lässt einen Lauf und den Fehler in Ruhe.</translation>
    </message>
    <message id="A closed device is silent, however long one listens.">
        <source></source>
        <translation>Ein geschlossenes Gerät schweigt, wie lange man auch zuhört.</translation>
    </message>
    <message id="No call of a driver or a device takes longer than 200 ms.">
        <source></source>
        <translation>Kein Aufruf eines Treibers oder Geräts dauert länger als 200 ms.</translation>
    </message>
    <message id="Between calls the event loop is never held up longer than 200 ms.">
        <source></source>
        <translation>Zwischen den Aufrufen wird die Ereignisschleife nie länger als 200 ms aufgehalten.</translation>
    </message>
    <message id="Every signal is emitted from the thread that owns the device.">
        <source></source>
        <translation>Jedes Signal wird aus dem Thread gesendet, dem das Gerät gehört.</translation>
    </message>
    <message id="A driver runs no event loop of its own inside a call or a slot, and does not call processEvents().">
        <source></source>
        <translation>Ein Treiber betreibt in keinem Aufruf oder Slot eine eigene Ereignisschleife und ruft processEvents() nicht auf.</translation>
    </message>
    <message id="Numbers in results are finite and within the range of their descriptor.">
        <source></source>
        <translation>Zahlen in Ergebnissen sind endlich und liegen im Bereich ihres Deskriptors.</translation>
    </message>
    <message id="Wells that were to be measured hold a value, wells that were not selected are NaN. Wells are counted row by row.">
        <source></source>
        <translation>Kavitäten, die gemessen werden sollten, enthalten einen Wert, nicht ausgewählte sind NaN. Kavitäten werden zeilenweise gezählt.</translation>
    </message>
    <message id="A measurement delivers what was configured, and names it: a read for each wavelength in the order asked for, repeated ones included, all that the choices list for an empty list; the integration time; and the plate of the descriptor.">
        <source></source>
        <translation>Eine Messung liefert, was konfiguriert war, und nennt es: eine Lesung je Wellenlänge in der verlangten Reihenfolge, wiederholte eingeschlossen, bei leerer Liste alle, die zur Auswahl stehen; die Integrationszeit; und die Platte des Deskriptors.</translation>
    </message>
    <message id="The times in a result lie within the run.">
        <source></source>
        <translation>Die Zeiten in einem Ergebnis liegen innerhalb des Laufs.</translation>
    </message>
    <message id="The acceleration at rest has the length of gravity in m/s2.">
        <source></source>
        <translation>Die Beschleunigung in Ruhe hat den Betrag der Schwerkraft in m/s2.</translation>
    </message>
    <message id="What the descriptor names as default holds where the configuration lacks the setting.">
        <source></source>
        <translation>Was der Deskriptor als Vorgabe nennt, gilt, wo der Konfiguration die Einstellung fehlt.</translation>
    </message>
    <message id="The configuration counts that was set when the run was started.">
        <source></source>
        <translation>Es zählt die Konfiguration, die beim Beginn des Laufs gesetzt war.</translation>
    </message>
    <message id="A driver leaves the locale of the process alone.">
        <source></source>
        <translation>Ein Treiber lässt die Locale des Prozesses in Ruhe.</translation>
    </message>
    <message id="A driver leaves the working folder and the file mask alone.">
        <source></source>
        <translation>Ein Treiber lässt den Arbeitsordner und die Dateimaske in Ruhe.</translation>
    </message>
    <message id="A driver leaves the environment alone.">
        <source></source>
        <translation>Ein Treiber lässt die Umgebungsvariablen in Ruhe.</translation>
    </message>
    <message id="A driver installs no signal handlers.">
        <source></source>
        <translation>Ein Treiber richtet keine Signalbehandlung ein.</translation>
    </message>
    <message id="A driver installs no message handler.">
        <source></source>
        <translation>Ein Treiber richtet keine Behandlung von Protokollmeldungen ein.</translation>
    </message>
    <message id="A driver writes nothing to the standard output.">
        <source></source>
        <translation>Ein Treiber schreibt nichts auf die Standardausgabe.</translation>
    </message>
    <message id="A driver does not end the application: no QCoreApplication::quit() or exit().">
        <source></source>
        <translation>Ein Treiber beendet die Anwendung nicht: kein QCoreApplication::quit() oder exit().</translation>
    </message>
    <message id="Derive the root object from QObject and DevicePlugin, list Q_INTERFACES(qel::devices::DevicePlugin), link everything the plugin uses, and build it against the Qt version of the application.">
        <source></source>
        <translation>Leiten Sie das Wurzelobjekt von QObject und DevicePlugin ab, nennen Sie Q_INTERFACES(qel::devices::DevicePlugin), binden Sie alles, was das Plugin verwendet, und bauen Sie es gegen die Qt-Version der Anwendung.</translation>
    </message>
    <message id="Write Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE &quot;plugin.json&quot;).">
        <source></source>
        <translation>Schreiben Sie Q_PLUGIN_METADATA(IID QelDevicePlugin_iid FILE "plugin.json").</translation>
    </message>
    <message id="Complete plugin.json; values of another type than string are not read.">
        <source></source>
        <translation>Vervollständigen Sie plugin.json; Werte, die keine Zeichenketten sind, werden nicht gelesen.</translation>
    </message>
    <message id="Call DeviceBroker::addDriver() in registerDrivers(), not in a constructor or a slot.">
        <source></source>
        <translation>Rufen Sie DeviceBroker::addDriver() in registerDrivers() auf, nicht in einem Konstruktor oder Slot.</translation>
    </message>
    <message id="Create the drivers anew in each call, under constant names.">
        <source></source>
        <translation>Erzeugen Sie die Treiber bei jedem Aufruf neu, unter gleichbleibenden Namen.</translation>
    </message>
    <message id="Pass both .ts files to qel_add_driver() under TRANSLATIONS.">
        <source></source>
        <translation>Übergeben Sie beide .ts-Dateien an qel_add_driver() unter TRANSLATIONS.</translation>
    </message>
    <message id="Compare the ids in the .ts files; finish what is marked as unfinished.">
        <source></source>
        <translation>Vergleichen Sie die Kennungen in den .ts-Dateien; stellen Sie fertig, was als unfertig markiert ist.</translation>
    </message>
    <message id="Return a constant.">
        <source></source>
        <translation>Geben Sie eine Konstante zurück.</translation>
    </message>
    <message id="Build the records with name() as their driver.">
        <source></source>
        <translation>Bilden Sie die Einträge mit name() als Treiber.</translation>
    </message>
    <message id="Leave out duplicates, for instance of an instrument that is found on two ways.">
        <source></source>
        <translation>Lassen Sie Doppelte weg, etwa ein Gerät, das auf zwei Wegen gefunden wird.</translation>
    </message>
    <message id="Put nothing into a record that changes by itself, and give an instrument the same name whether or not it is in use.">
        <source></source>
        <translation>Schreiben Sie nichts in einen Eintrag, was sich von selbst ändert, und geben Sie einem Gerät denselben Namen, ob es benutzt wird oder nicht.</translation>
    </message>
    <message id="Do not open or probe a connection that one of the driver&#x27;s devices holds; list it from memory.">
        <source></source>
        <translation>Öffnen oder prüfen Sie keine Verbindung, die ein Gerät des Treibers hält; führen Sie es aus dem Gedächtnis auf.</translation>
    </message>
    <message id="List the instruments that the driver&#x27;s own devices hold from memory.">
        <source></source>
        <translation>Führen Sie die Geräte, die der Treiber selbst offen hält, aus dem Gedächtnis auf.</translation>
    </message>
    <message id="Do not talk to an instrument that one of the driver&#x27;s devices holds.">
        <source></source>
        <translation>Sprechen Sie mit keinem Gerät, das der Treiber selbst offen hält.</translation>
    </message>
    <message id="Leave the constructor to store things; talk to the instrument from open() on.">
        <source></source>
        <translation>Speichern Sie im Konstruktor nur Werte; sprechen Sie mit dem Gerät erst ab open().</translation>
    </message>
    <message id="Pass the record on to the constructor of Device unchanged.">
        <source></source>
        <translation>Reichen Sie den Eintrag unverändert an den Konstruktor von Device weiter.</translation>
    </message>
    <message id="Do not keep devices for later; share the connection behind them instead.">
        <source></source>
        <translation>Heben Sie keine Geräteobjekte für später auf; teilen Sie stattdessen die Verbindung dahinter.</translation>
    </message>
    <message id="Look the location up among the instruments that the driver lists.">
        <source></source>
        <translation>Suchen Sie den Ort unter den Geräten, die der Treiber aufführt.</translation>
    </message>
    <message id="Start timers and connections in open().">
        <source></source>
        <translation>Starten Sie Zeitgeber und Verbindungen in open().</translation>
    </message>
    <message id="Keep all state in the device; share what is behind a connection, such as a bus, only.">
        <source></source>
        <translation>Halten Sie allen Zustand im Geräteobjekt; teilen Sie nur, was hinter einer Verbindung liegt, etwa einen Bus.</translation>
    </message>
    <message id="Guard every step of opening with a timer that ends in setError() (ERROR_DEVICE_TIMEOUT, ERROR_DEVICE_CANT_OPEN), and call setOpen(true) once, as the last step.">
        <source></source>
        <translation>Sichern Sie jeden Schritt des Öffnens mit einem Zeitgeber, der in setError() endet (ERROR_DEVICE_TIMEOUT, ERROR_DEVICE_CANT_OPEN), und rufen Sie setOpen(true) einmal auf, als letzten Schritt.</translation>
    </message>
    <message id="Fill the feature table before setOpen(true).">
        <source></source>
        <translation>Füllen Sie die Tabelle der Funktionen vor setOpen(true).</translation>
    </message>
    <message id="Return early in open() when isOpen().">
        <source></source>
        <translation>Kehren Sie in open() früh zurück, wenn isOpen() gilt.</translation>
    </message>
    <message id="Drop the connection and call setStatus({}); do not report the end of the connection as an error.">
        <source></source>
        <translation>Trennen Sie die Verbindung und rufen Sie setStatus({}) auf; melden Sie das Ende der Verbindung nicht als Fehler.</translation>
    </message>
    <message id="Stop timers and drop pending answers in close() before anything is emitted.">
        <source></source>
        <translation>Halten Sie in close() Zeitgeber an und verwerfen Sie ausstehende Antworten, bevor etwas gesendet wird.</translation>
    </message>
    <message id="Let close() work from the state there is; never assume a connection.">
        <source></source>
        <translation>Lassen Sie close() von dem Zustand ausgehen, der da ist; setzen Sie nie eine Verbindung voraus.</translation>
    </message>
    <message id="Cancel the opening in close(), its timers included.">
        <source></source>
        <translation>Brechen Sie das Öffnen in close() ab, seine Zeitgeber eingeschlossen.</translation>
    </message>
    <message id="Set everything up in open() and tear everything down in close(); no one-time flags.">
        <source></source>
        <translation>Richten Sie alles in open() ein und bauen Sie alles in close() ab; keine Merker, die nur einmal gelten.</translation>
    </message>
    <message id="Call setError(NO_DEVICE_ERROR, {}) at the start of open(), not in close().">
        <source></source>
        <translation>Rufen Sie setError(NO_DEVICE_ERROR, {}) am Anfang von open() auf, nicht in close().</translation>
    </message>
    <message id="Release the connection in close() and in the destructor.">
        <source></source>
        <translation>Geben Sie die Verbindung in close() und im Destruktor frei.</translation>
    </message>
    <message id="Never call setConfiguration() in a driver.">
        <source></source>
        <translation>Rufen Sie setConfiguration() in einem Treiber niemals auf.</translation>
    </message>
    <message id="Call addFeature() or setDescriptor() for each feature before setOpen(true).">
        <source></source>
        <translation>Rufen Sie vor setOpen(true) für jede Funktion addFeature() oder setDescriptor() auf.</translation>
    </message>
    <message id="See docs/feature-values.md for the keys of each feature.">
        <source></source>
        <translation>Die Schlüssel jeder Funktion stehen in docs/feature-values.md.</translation>
    </message>
    <message id="Put values of exactly the named type into the descriptor (QVariant::fromValue()); limits are int or double. See docs/feature-values.md.">
        <source></source>
        <translation>Schreiben Sie Werte von genau dem genannten Typ in den Deskriptor (QVariant::fromValue()); Grenzen sind int oder double. Siehe docs/feature-values.md.</translation>
    </message>
    <message id="Let every way out of a run go through one function that forgets the run and emits executed(); guard the run with a timer.">
        <source></source>
        <translation>Führen Sie jeden Weg aus einem Lauf durch eine Funktion, die den Lauf vergisst und executed() sendet; sichern Sie den Lauf mit einem Zeitgeber.</translation>
    </message>
    <message id="Order: setBusy(false), setError(), emit executed().">
        <source></source>
        <translation>Die Reihenfolge: setBusy(false), setError(), executed() senden.</translation>
    </message>
    <message id="Call setBusy(true) in executeImpl() for all that does not end there.">
        <source></source>
        <translation>Rufen Sie setBusy(true) in executeImpl() für alles auf, was nicht dort schon endet.</translation>
    </message>
    <message id="See docs/feature-values.md; mind the exact types (int is not double).">
        <source></source>
        <translation>Siehe docs/feature-values.md; achten Sie auf die genauen Typen (int ist nicht double).</translation>
    </message>
    <message id="Emit executed(feature, false, QVariant()).">
        <source></source>
        <translation>Senden Sie executed(feature, false, QVariant()).</translation>
    </message>
    <message id="Compare type (QVariant::userType()), limits and choices before the run starts.">
        <source></source>
        <translation>Vergleichen Sie Typ (QVariant::userType()), Grenzen und Auswahlwerte, bevor der Lauf beginnt.</translation>
    </message>
    <message id="Call setError(NO_DEVICE_ERROR, {}) first in executeImpl().">
        <source></source>
        <translation>Rufen Sie in executeImpl() als Erstes setError(NO_DEVICE_ERROR, {}) auf.</translation>
    </message>
    <message id="Work on a copy of configuration(feature).">
        <source></source>
        <translation>Arbeiten Sie mit einer Kopie von configuration(feature).</translation>
    </message>
    <message id="Emit transientValue(feature, QVariantHash{{&quot;progress&quot;, p}}) with a double, 0 at the start and 1 before the ending; with Qel::Driver, call reportProgress().">
        <source></source>
        <translation>Senden Sie transientValue(feature, QVariantHash{{"progress", p}}) mit einem double, 0 zu Beginn und 1 vor dem Ende; mit Qel::Driver rufen Sie reportProgress() auf.</translation>
    </message>
    <message id="Refuse the second with ERROR_DEVICE_NOT_READY and executed(feature, false); do not touch the run in progress.">
        <source></source>
        <translation>Lehnen Sie den zweiten Aufruf mit ERROR_DEVICE_NOT_READY und executed(feature, false) ab; rühren Sie den laufenden nicht an.</translation>
    </message>
    <message id="Call setError() before an ending that is not ok, unless the user aborted the run.">
        <source></source>
        <translation>Rufen Sie setError() vor einem Ende ohne Erfolg auf, außer wenn der Benutzer den Lauf abgebrochen hat.</translation>
    </message>
    <message id="Emit a progress of 0 in executeImpl().">
        <source></source>
        <translation>Senden Sie in executeImpl() einen Fortschritt von 0.</translation>
    </message>
    <message id="Stop timers and subscriptions with the run they belong to.">
        <source></source>
        <translation>Beenden Sie Zeitgeber und Abonnements mit dem Lauf, zu dem sie gehören.</translation>
    </message>
    <message id="Call removeFeature() only when the instrument has lost the feature.">
        <source></source>
        <translation>Rufen Sie removeFeature() nur auf, wenn das Gerät die Funktion verloren hat.</translation>
    </message>
    <message id="Forget the run before emitting executed(), and touch nothing of it afterwards.">
        <source></source>
        <translation>Vergessen Sie den Lauf, bevor Sie executed() senden, und rühren Sie danach nichts mehr davon an.</translation>
    </message>
    <message id="Pass an id to emitActionRequired() and translate it in plugin_en.ts and plugin_de.ts.">
        <source></source>
        <translation>Übergeben Sie emitActionRequired() eine Kennung und übersetzen Sie diese in plugin_en.ts und plugin_de.ts.</translation>
    </message>
    <message id="Override confirmActionImpl() and go on from there.">
        <source></source>
        <translation>Überschreiben Sie confirmActionImpl() und machen Sie dort weiter.</translation>
    </message>
    <message id="Override abortActionImpl() and end the run there without setError().">
        <source></source>
        <translation>Überschreiben Sie abortActionImpl() und beenden Sie den Lauf dort ohne setError().</translation>
    </message>
    <message id="Compare the id with that of the open request, and forget it with the first answer.">
        <source></source>
        <translation>Vergleichen Sie die Kennung mit der des offenen Auftrags, und vergessen Sie diese mit der ersten Antwort.</translation>
    </message>
    <message id="Learn the id from the signal actionRequired() itself, connected in the constructor, not from the returned value.">
        <source></source>
        <translation>Nehmen Sie die Kennung aus dem Signal actionRequired() selbst, das Sie im Konstruktor verbinden, nicht aus dem Rückgabewert.</translation>
    </message>
    <message id="Forget the id of the request where the run is forgotten.">
        <source></source>
        <translation>Vergessen Sie die Kennung des Auftrags dort, wo der Lauf vergessen wird.</translation>
    </message>
    <message id="Call emitActionRequired() first, unless the instrument senses that its slot is empty.">
        <source></source>
        <translation>Rufen Sie zuerst emitActionRequired() auf, außer wenn das Gerät selbst spürt, dass sein Schacht leer ist.</translation>
    </message>
    <message id="Use ERROR_DEVICE_VENDOR_SPECIFIC and say more in the additional information.">
        <source></source>
        <translation>Verwenden Sie ERROR_DEVICE_VENDOR_SPECIFIC und sagen Sie mehr in der Zusatzangabe.</translation>
    </message>
    <message id="Translate the id in plugin_en.ts and plugin_de.ts; log what is meant for developers.">
        <source></source>
        <translation>Übersetzen Sie die Kennung in plugin_en.ts und plugin_de.ts; was für Entwickler gedacht ist, gehört ins Protokoll.</translation>
    </message>
    <message id="In close(): stop the work, forget the run, setStatus({}), then emit executed().">
        <source></source>
        <translation>In close(): die Arbeit anhalten, den Lauf vergessen, setStatus({}), dann executed() senden.</translation>
    </message>
    <message id="In reset(): stop the work, forget the run, setBusy(false), clear the error, then emit executed().">
        <source></source>
        <translation>In reset(): die Arbeit anhalten, den Lauf vergessen, setBusy(false), den Fehler löschen, dann executed() senden.</translation>
    </message>
    <message id="Emit executed() in reset() only when a run is in progress.">
        <source></source>
        <translation>Senden Sie executed() in reset() nur während eines Laufs.</translation>
    </message>
    <message id="Return early in reset() unless the device is open.">
        <source></source>
        <translation>Kehren Sie in reset() früh zurück, wenn das Gerät nicht offen ist.</translation>
    </message>
    <message id="Report what update() finds through setters.">
        <source></source>
        <translation>Melden Sie über die Setter, was update() feststellt.</translation>
    </message>
    <message id="Give timers, sockets and lambdas the device as parent or context, declare a connection before the members that listen to it, and do not call close() in the destructor.">
        <source></source>
        <translation>Geben Sie Zeitgebern, Sockets und Lambdas das Geräteobjekt als Elternobjekt oder Kontext, deklarieren Sie eine Verbindung vor den Datenelementen, die ihr zuhören, und rufen Sie close() nicht im Destruktor auf.</translation>
    </message>
    <message id="After emitting, touch the device only through things that die with it (its own timers, QPointer).">
        <source></source>
        <translation>Rühren Sie das Geräteobjekt nach dem Senden nur noch über Dinge an, die mit ihm sterben (seine eigenen Zeitgeber, QPointer).</translation>
    </message>
    <message id="Let the device own what it opens; end and wait for its threads in the destructor.">
        <source></source>
        <translation>Lassen Sie dem Geräteobjekt gehören, was es öffnet; beenden Sie seine Threads im Destruktor und warten Sie dort auf sie.</translation>
    </message>
    <message id="Use neither qApp nor an event loop nor statics in a driver&#x27;s destructor: neither those of other libraries nor those of the plugin&#x27;s own files, which are gone by then.">
        <source></source>
        <translation>Verwenden Sie im Destruktor eines Treibers weder qApp noch eine Ereignisschleife noch statische Objekte: weder die anderer Bibliotheken noch die der eigenen Dateien des Plugins, die es dann nicht mehr gibt.</translation>
    </message>
    <message id="Read what update() asks for from a queue behind the run, or not at all during one.">
        <source></source>
        <translation>Lesen Sie, was update() wissen will, aus einer Warteschlange hinter dem Lauf, oder während eines Laufs gar nicht.</translation>
    </message>
    <message id="Drop the connection in close(), or the answers that come over it.">
        <source></source>
        <translation>Trennen Sie in close() die Verbindung, oder verwerfen Sie die Antworten, die über sie kommen.</translation>
    </message>
    <message id="Start the work and return; go on when the instrument&#x27;s answer arrives.">
        <source></source>
        <translation>Stoßen Sie die Arbeit an und kehren Sie zurück; machen Sie weiter, wenn die Antwort des Geräts eintrifft.</translation>
    </message>
    <message id="Split the work at the points where it waits; move computations to a thread.">
        <source></source>
        <translation>Teilen Sie die Arbeit dort auf, wo sie wartet; verlegen Sie Berechnungen in einen Thread.</translation>
    </message>
    <message id="Bring results from other threads back with a queued call (QMetaObject::invokeMethod()) before emitting.">
        <source></source>
        <translation>Holen Sie Ergebnisse anderer Threads mit einem eingereihten Aufruf (QMetaObject::invokeMethod()) herüber, bevor Sie senden.</translation>
    </message>
    <message id="Return, and go on when the answer arrives; work that must wait belongs in a thread.">
        <source></source>
        <translation>Kehren Sie zurück und machen Sie weiter, wenn die Antwort eintrifft; Arbeit, die warten muss, gehört in einen Thread.</translation>
    </message>
    <message id="End the run with an error when the instrument delivers such a number; a saturated well holds the maximum.">
        <source></source>
        <translation>Beenden Sie den Lauf mit einem Fehler, wenn das Gerät eine solche Zahl liefert; eine gesättigte Kavität enthält das Maximum.</translation>
    </message>
    <message id="Fill the read with NaN and write each value to row * columns + column.">
        <source></source>
        <translation>Füllen Sie die Lesung mit NaN und schreiben Sie jeden Wert an die Stelle row * columns + column.</translation>
    </message>
    <message id="Build the result from the configuration that the run was started with.">
        <source></source>
        <translation>Bilden Sie das Ergebnis aus der Konfiguration, mit der der Lauf begonnen wurde.</translation>
    </message>
    <message id="Take the time when the run starts, in UTC, and ask the instrument for a new result.">
        <source></source>
        <translation>Nehmen Sie die Zeit beim Beginn des Laufs, in UTC, und verlangen Sie vom Gerät ein neues Ergebnis.</translation>
    </message>
    <message id="Multiply what the sensor says in g by 9.81.">
        <source></source>
        <translation>Multiplizieren Sie, was der Sensor in g angibt, mit 9,81.</translation>
    </message>
    <message id="Read the default from the descriptor, not from a second place.">
        <source></source>
        <translation>Lesen Sie die Vorgabe aus dem Deskriptor, nicht an einer zweiten Stelle.</translation>
    </message>
    <message id="Copy configuration(feature) in executeImpl(), and read it nowhere else.">
        <source></source>
        <translation>Kopieren Sie configuration(feature) in executeImpl(), und lesen Sie sie sonst nirgends.</translation>
    </message>
    <message id="Use QLocale::c() and QByteArray::number(); never setlocale() or QLocale::setDefault().">
        <source></source>
        <translation>Verwenden Sie QLocale::c() und QByteArray::number(), niemals setlocale() oder QLocale::setDefault().</translation>
    </message>
    <message id="Use absolute paths.">
        <source></source>
        <translation>Verwenden Sie absolute Pfade.</translation>
    </message>
    <message id="Pass a QProcessEnvironment to what the driver starts itself.">
        <source></source>
        <translation>Geben Sie dem, was der Treiber selbst startet, eine QProcessEnvironment mit.</translation>
    </message>
    <message id="Use MSG_NOSIGNAL where a write could raise SIGPIPE, and no library that takes signals.">
        <source></source>
        <translation>Verwenden Sie MSG_NOSIGNAL, wo ein Schreiben SIGPIPE auslösen könnte, und keine Bibliothek, die sich Signale nimmt.</translation>
    </message>
    <message id="Log to a category of your own; who wants the messages in a file sets that up outside.">
        <source></source>
        <translation>Schreiben Sie in eine eigene Protokollkategorie; wer die Meldungen in einer Datei haben will, richtet das außerhalb ein.</translation>
    </message>
    <message id="Log to a category of your own (QLoggingCategory).">
        <source></source>
        <translation>Schreiben Sie in eine eigene Protokollkategorie (QLoggingCategory).</translation>
    </message>
    <message id="Report an error with setError().">
        <source></source>
        <translation>Melden Sie einen Fehler mit setError().</translation>
    </message>
    <message id="A file that does not load, or whose root object cannot be cast, is passed over when an application starts, with no more than a warning in the log.">
        <source></source>
        <translation>Eine Datei, die sich nicht laden oder deren Wurzelobjekt sich nicht umwandeln lässt, wird beim Start einer Anwendung übergangen, mit nicht mehr als einer Warnung im Protokoll.</translation>
    </message>
    <message id="Tools tell a driver from other plugins by this id without loading it.">
        <source></source>
        <translation>An dieser Kennung unterscheiden Werkzeuge einen Treiber von anderen Plugins, ohne ihn zu laden.</translation>
    </message>
    <message id="They are all that a user sees of a plugin when something is wrong with it.">
        <source></source>
        <translation>Mehr sieht ein Benutzer von einem Plugin nicht, wenn etwas daran nicht stimmt.</translation>
    </message>
    <message id="A plugin without a driver serves no instrument.">
        <source></source>
        <translation>Ein Plugin ohne Treiber dient keinem Gerät.</translation>
    </message>
    <message id="A plugin folder that is scanned twice calls it twice; the new drivers replace the old ones.">
        <source></source>
        <translation>Ein Plugin-Ordner, der zweimal durchsucht wird, ruft es zweimal auf; die neuen Treiber ersetzen die alten.</translation>
    </message>
    <message id="Texts for people leave a driver as translation ids; without a catalogue the user reads the id.">
        <source></source>
        <translation>Texte für Menschen verlassen einen Treiber als Übersetzungs-Kennungen; ohne Katalog liest der Benutzer die Kennung.</translation>
    </message>
    <message id="A text that one language lacks is found out by the user who needs it.">
        <source></source>
        <translation>Einen Text, der einer Sprache fehlt, entdeckt der Benutzer, der ihn braucht.</translation>
    </message>
    <message id="Records name their driver by it, and the broker finds the driver by it.">
        <source></source>
        <translation>Einträge nennen ihren Treiber mit diesem Namen, und der Broker findet den Treiber darüber.</translation>
    </message>
    <message id="The broker hands a record to the driver that it names; letter case counts.">
        <source></source>
        <translation>Der Broker gibt einen Eintrag an den Treiber, den er nennt; Groß- und Kleinschreibung zählen.</translation>
    </message>
    <message id="Two equal records are one instrument to the user, who sees it twice.">
        <source></source>
        <translation>Zwei gleiche Einträge sind für den Benutzer ein Gerät, das er zweimal sieht.</translation>
    </message>
    <message id="Front ends keep their selection by the record.">
        <source></source>
        <translation>Oberflächen merken sich ihre Auswahl anhand des Eintrags.</translation>
    </message>
    <message id="Applications enumerate at any time, also while an instrument is at work.">
        <source></source>
        <translation>Anwendungen zählen jederzeit auf, auch während ein Gerät arbeitet.</translation>
    </message>
    <message id="A front end takes an instrument that is not listed for unplugged, and closes its window.">
        <source></source>
        <translation>Eine Oberfläche hält ein Gerät, das nicht aufgeführt ist, für ausgesteckt und schließt sein Fenster.</translation>
    </message>
    <message id="Another part of the application looks for instruments every few seconds.">
        <source></source>
        <translation>Ein anderer Teil der Anwendung sucht alle paar Sekunden nach Geräten.</translation>
    </message>
    <message id="The caller owns it and connects to its signals; what happened before goes unseen.">
        <source></source>
        <translation>Es gehört dem Aufrufer, und er verbindet sich mit seinen Signalen; was vorher geschah, bleibt ungesehen.</translation>
    </message>
    <message id="A front end finds the device of a record by comparing them.">
        <source></source>
        <translation>Eine Oberfläche findet das Gerät zu einem Eintrag, indem sie beide vergleicht.</translation>
    </message>
    <message id="The caller deletes what it was given; a second owner would hold a dangling pointer.">
        <source></source>
        <translation>Der Aufrufer löscht, was er bekommen hat; ein zweiter Besitzer hielte einen ungültigen Zeiger.</translation>
    </message>
    <message id="An application may hold a record of an instrument that is gone; null is how it learns.">
        <source></source>
        <translation>Eine Anwendung hat vielleicht den Eintrag eines Geräts, das fort ist; an null erkennt sie es.</translation>
    </message>
    <message id="Signals of an object that nobody has opened are mistaken for the outcome of a call.">
        <source></source>
        <translation>Signale eines Objekts, das niemand geöffnet hat, werden für die Folge eines Aufrufs gehalten.</translation>
    </message>
    <message id="Laboratories have several instruments of a kind, and measure with them at the same time.">
        <source></source>
        <translation>Labore haben mehrere Geräte einer Art und messen gleichzeitig mit ihnen.</translation>
    </message>
    <message id="An application waits for one of the two; with neither it waits for ever.">
        <source></source>
        <translation>Eine Anwendung wartet auf eines von beiden; ohne beides wartet sie für immer.</translation>
    </message>
    <message id="Front ends build their forms then; what comes later makes them flicker.">
        <source></source>
        <translation>Oberflächen bauen dann ihre Formulare; was später kommt, lässt sie flackern.</translation>
    </message>
    <message id="Two parts of an application may open the same device.">
        <source></source>
        <translation>Zwei Teile einer Anwendung öffnen vielleicht dasselbe Gerät.</translation>
    </message>
    <message id="Closing is what the user wants, not a fault.">
        <source></source>
        <translation>Das Schließen ist der Wunsch des Benutzers und keine Störung.</translation>
    </message>
    <message id="A late signal reaches an application that has moved on, and is taken for the answer to something else.">
        <source></source>
        <translation>Ein spätes Signal erreicht eine Anwendung, die schon weiter ist, und wird für die Antwort auf etwas anderes gehalten.</translation>
    </message>
    <message id="Applications close on every way out.">
        <source></source>
        <translation>Anwendungen schließen auf jedem Weg hinaus.</translation>
    </message>
    <message id="A device that opens afterwards holds the instrument, and nobody knows.">
        <source></source>
        <translation>Ein Gerät, das danach noch öffnet, ist belegt, und niemand weiß davon.</translation>
    </message>
    <message id="The second try must not behave differently from the first.">
        <source></source>
        <translation>Der zweite Versuch darf nicht anders verlaufen als der erste.</translation>
    </message>
    <message id="The user reads after closing what went wrong, and must not read it again after a successful open.">
        <source></source>
        <translation>Der Benutzer liest nach dem Schließen, was schiefging, und darf es nach einem gelungenen Öffnen nicht noch einmal lesen.</translation>
    </message>
    <message id="A port that is never released is found busy by the next one who opens it.">
        <source></source>
        <translation>Einen Anschluss, der nie freigegeben wird, findet der Nächste belegt, der ihn öffnet.</translation>
    </message>
    <message id="What the user has set is lost, and the next run is made with something else.">
        <source></source>
        <translation>Was der Benutzer eingestellt hat, geht verloren, und der nächste Lauf geschieht mit etwas anderem.</translation>
    </message>
    <message id="Without a feature there is nothing to do with an instrument.">
        <source></source>
        <translation>Ohne Funktion ist mit einem Gerät nichts anzufangen.</translation>
    </message>
    <message id="Front ends label axes and lay out plates by them without knowing the driver.">
        <source></source>
        <translation>Oberflächen beschriften danach Achsen und zeichnen Platten, ohne den Treiber zu kennen.</translation>
    </message>
    <message id="Forms and the command line are built from the settings alone.">
        <source></source>
        <translation>Formulare und Befehlszeile entstehen allein aus den Einstellungen.</translation>
    </message>
    <message id="An application waits for it; with none it hangs, and a second one is taken for the ending of the next run.">
        <source></source>
        <translation>Eine Anwendung wartet darauf; ohne Ende hängt sie, und ein zweites wird für das Ende des nächsten Laufs gehalten.</translation>
    </message>
    <message id="A receiver of executed() starts the next run at once.">
        <source></source>
        <translation>Ein Empfänger von executed() beginnt sofort den nächsten Lauf.</translation>
    </message>
    <message id="Front ends lock their controls by the busy flag.">
        <source></source>
        <translation>Oberflächen sperren ihre Bedienung, solange das Gerät beschäftigt ist.</translation>
    </message>
    <message id="Results are shown, stored and converted without knowing the driver.">
        <source></source>
        <translation>Ergebnisse werden angezeigt, gespeichert und umgewandelt, ohne den Treiber zu kennen.</translation>
    </message>
    <message id="A value beside a failure is taken for a measurement.">
        <source></source>
        <translation>Ein Wert neben einem Fehlschlag wird für eine Messung gehalten.</translation>
    </message>
    <message id="A value that is silently rounded, clamped or ignored gives a measurement that nobody asked for.">
        <source></source>
        <translation>Ein Wert, der stillschweigend gerundet, begrenzt oder übergangen wird, ergibt eine Messung, die niemand verlangt hat.</translation>
    </message>
    <message id="The error shown must be that of the last run.">
        <source></source>
        <translation>Der Fehler, der angezeigt wird, muss der des letzten Laufs sein.</translation>
    </message>
    <message id="The configuration belongs to the application, which compares it with its form.">
        <source></source>
        <translation>Die Konfiguration gehört der Anwendung, und sie vergleicht sie mit ihrem Formular.</translation>
    </message>
    <message id="A bar that jumps back or stops short looks like a fault.">
        <source></source>
        <translation>Ein Balken, der zurückspringt oder vor dem Ende stehen bleibt, sieht nach einer Störung aus.</translation>
    </message>
    <message id="Two parts of an application may use one device; neither must wait in vain.">
        <source></source>
        <translation>Zwei Teile einer Anwendung benutzen vielleicht ein Gerät; keiner darf vergeblich warten.</translation>
    </message>
    <message id="Without one, or with that of an earlier run, nobody knows that the instrument needs help.">
        <source></source>
        <translation>Ohne Fehler, oder mit dem eines früheren Laufs, weiß niemand, dass das Gerät Hilfe braucht.</translation>
    </message>
    <message id="A bar that appears in the middle hides that the instrument did nothing until then.">
        <source></source>
        <translation>Ein Balken, der in der Mitte erscheint, verbirgt, dass das Gerät bis dahin nichts getan hat.</translation>
    </message>
    <message id="They are taken for values of the next run.">
        <source></source>
        <translation>Sie werden für Werte des nächsten Laufs gehalten.</translation>
    </message>
    <message id="Front ends drop its form, and what the user has set with it.">
        <source></source>
        <translation>Oberflächen verwerfen ihr Formular und damit, was der Benutzer eingestellt hat.</translation>
    </message>
    <message id="Series of runs are made like that.">
        <source></source>
        <translation>So entstehen Serien von Läufen.</translation>
    </message>
    <message id="The application shows it in the user&#x27;s language.">
        <source></source>
        <translation>Die Anwendung zeigt den Text in der Sprache des Benutzers.</translation>
    </message>
    <message id="The user has done what was asked and waits.">
        <source></source>
        <translation>Der Benutzer hat getan, was verlangt war, und wartet.</translation>
    </message>
    <message id="The user&#x27;s own decision is not a fault of the instrument.">
        <source></source>
        <translation>Was der Benutzer selbst entscheidet, ist keine Störung des Geräts.</translation>
    </message>
    <message id="Several windows may show the same request, and each may answer.">
        <source></source>
        <translation>Mehrere Fenster zeigen vielleicht denselben Auftrag, und jedes kann antworten.</translation>
    </message>
    <message id="Scripts answer at once, before emitActionRequired() has returned the id.">
        <source></source>
        <translation>Skripte antworten sofort, bevor emitActionRequired() die Kennung zurückgegeben hat.</translation>
    </message>
    <message id="The person comes back and confirms; parts move of an instrument that nobody uses.">
        <source></source>
        <translation>Der Mensch kommt zurück und bestätigt; dann bewegen sich Teile eines Geräts, das niemand benutzt.</translation>
    </message>
    <message id="With a plate in the slot every later measurement is wrong.">
        <source></source>
        <translation>Mit einer Platte im Schacht ist jede spätere Messung falsch.</translation>
    </message>
    <message id="Any other code is shown as an unknown error.">
        <source></source>
        <translation>Jeder andere Code wird als unbekannter Fehler angezeigt.</translation>
    </message>
    <message id="A receiver of the ending that executes again must be refused, not start a run on a device that is closing.">
        <source></source>
        <translation>Ein Empfänger des Endes, der erneut ausführt, muss abgelehnt werden; er darf keinen Lauf auf einem Gerät beginnen, das gerade schließt.</translation>
    </message>
    <message id="It is the way out of a run that is stuck.">
        <source></source>
        <translation>Es ist der Ausweg aus einem Lauf, der festhängt.</translation>
    </message>
    <message id="An ending without a run is taken for that of the next one.">
        <source></source>
        <translation>Ein Ende ohne Lauf wird für das des nächsten gehalten.</translation>
    </message>
    <message id="A closed device has nothing else to bring back.">
        <source></source>
        <translation>An einem geschlossenen Gerät ist sonst nichts zurückzusetzen.</translation>
    </message>
    <message id="Nobody has started a run.">
        <source></source>
        <translation>Niemand hat einen Lauf begonnen.</translation>
    </message>
    <message id="The user may end the program at any time; receivers of the signals may be half gone.">
        <source></source>
        <translation>Der Benutzer kann das Programm jederzeit beenden; Empfänger der Signale sind dann vielleicht schon halb abgebaut.</translation>
    </message>
    <message id="That is how an application reacts to an ending or an error.">
        <source></source>
        <translation>So antwortet eine Anwendung auf ein Ende oder einen Fehler.</translation>
    </message>
    <message id="A program that runs for weeks opens and closes an instrument thousands of times.">
        <source></source>
        <translation>Ein Programm, das wochenlang läuft, öffnet und schließt ein Gerät Tausende Male.</translation>
    </message>
    <message id="Drivers are destroyed after main(), when the application object has gone.">
        <source></source>
        <translation>Treiber werden nach main() abgebaut, wenn es das Anwendungsobjekt nicht mehr gibt.</translation>
    </message>
    <message id="Front ends update what they show at any time.">
        <source></source>
        <translation>Oberflächen erneuern jederzeit, was sie zeigen.</translation>
    </message>
    <message id="The answer of the instrument to what was cut short comes seconds later, and is taken for something else.">
        <source></source>
        <translation>Die Antwort des Geräts auf das, was abgebrochen wurde, kommt Sekunden später und wird für etwas anderes gehalten.</translation>
    </message>
    <message id="The calls come from the thread that draws the windows.">
        <source></source>
        <translation>Die Aufrufe kommen aus dem Thread, der die Fenster zeichnet.</translation>
    </message>
    <message id="A slot that waits freezes every window and every other instrument.">
        <source></source>
        <translation>Ein Slot, der wartet, lässt jedes Fenster und jedes andere Gerät einfrieren.</translation>
    </message>
    <message id="Receivers connected directly would run in a thread that they do not expect.">
        <source></source>
        <translation>Direkt verbundene Empfänger liefen sonst in einem Thread, den sie nicht erwarten.</translation>
    </message>
    <message id="What the user clicks meanwhile reaches the device in the middle of a step; it can be deleted there.">
        <source></source>
        <translation>Was der Benutzer inzwischen anklickt, erreicht das Gerät mitten in einem Schritt; dort kann es sogar gelöscht werden.</translation>
    </message>
    <message id="A number that cannot be is taken for a measurement, and averaged.">
        <source></source>
        <translation>Eine Zahl, die es nicht geben kann, wird für eine Messung gehalten und geht in Mittelwerte ein.</translation>
    </message>
    <message id="A plate whose values stand in other wells looks as good as a right one.">
        <source></source>
        <translation>Eine Platte, deren Werte in anderen Kavitäten stehen, sieht so gut aus wie eine richtige.</translation>
    </message>
    <message id="Values under another wavelength or time than they were measured with are wrong values.">
        <source></source>
        <translation>Werte unter einer anderen Wellenlänge oder Zeit als der, mit der sie gemessen wurden, sind falsche Werte.</translation>
    </message>
    <message id="A result from another day, which the instrument had stored, is taken for the present plate.">
        <source></source>
        <translation>Ein Ergebnis eines anderen Tages, das im Gerät gespeichert war, wird für das der jetzigen Platte gehalten.</translation>
    </message>
    <message id="In other units, g for instance, tilts are computed wrongly.">
        <source></source>
        <translation>In anderen Einheiten, etwa g, werden Neigungen falsch berechnet.</translation>
    </message>
    <message id="The form shows the default, and the user believes that it was measured with it.">
        <source></source>
        <translation>Das Formular zeigt die Vorgabe, und der Benutzer glaubt, dass damit gemessen wurde.</translation>
    </message>
    <message id="An application prepares the next run while this one goes on.">
        <source></source>
        <translation>Eine Anwendung bereitet den nächsten Lauf vor, während dieser noch dauert.</translation>
    </message>
    <message id="With another decimal sign the application reads and writes wrong numbers.">
        <source></source>
        <translation>Mit einem anderen Dezimalzeichen liest und schreibt die Anwendung falsche Zahlen.</translation>
    </message>
    <message id="The application&#x27;s relative paths lead elsewhere, and results are saved where nobody looks.">
        <source></source>
        <translation>Relative Pfade der Anwendung führen dann woandershin, und Ergebnisse werden gespeichert, wo niemand sucht.</translation>
    </message>
    <message id="Other drivers, and programs that the application starts, read it.">
        <source></source>
        <translation>Andere Treiber, und Programme, die die Anwendung startet, lesen sie.</translation>
    </message>
    <message id="The application closes its instruments on the signals that end it; two handlers do not go together.">
        <source></source>
        <translation>Die Anwendung schließt ihre Geräte bei den Signalen, die sie beenden; zwei Behandlungen vertragen sich nicht.</translation>
    </message>
    <message id="The application&#x27;s log loses what all others say.">
        <source></source>
        <translation>Dem Protokoll der Anwendung fehlt dann, was alle anderen sagen.</translation>
    </message>
    <message id="Tools print their data there, and what a driver says ends up among measured values.">
        <source></source>
        <translation>Werkzeuge geben dort ihre Daten aus, und was ein Treiber sagt, gerät zwischen die Messwerte.</translation>
    </message>
    <message id="Whatever else the application is doing is lost.">
        <source></source>
        <translation>Was immer die Anwendung sonst gerade tut, geht verloren.</translation>
    </message>
    <message id="seed %1, %2 sequences">
        <source></source>
        <translation>Startwert %1, %2 Folgen</translation>
    </message>
    <message id="What must hold at any time did.">
        <source></source>
        <translation>Was jederzeit gelten muss, hat gegolten.</translation>
    </message>
    <message id="FAILED: %1">
        <source></source>
        <translation>VERLETZT: %1</translation>
    </message>
    <message id="The shortest sequence found:">
        <source></source>
        <translation>Die kürzeste Folge, die gefunden wurde:</translation>
    </message>
    <message id="By hand">
        <source></source>
        <translation>Von Hand</translation>
    </message>
    <message id="Pull the plug of the instrument while it works.">
        <source></source>
        <translation>Ziehen Sie den Stecker des Geräts, während es arbeitet.</translation>
    </message>
    <message id="Put the plug in again, and wait until the instrument is ready.">
        <source></source>
        <translation>Stecken Sie den Stecker wieder ein und warten Sie, bis das Gerät bereit ist.</translation>
    </message>
    <message id="Take the plate out of the instrument, if there is one.">
        <source></source>
        <translation>Nehmen Sie die Platte aus dem Gerät, falls eine darin ist.</translation>
    </message>
    <message id="Put a plate into the instrument.">
        <source></source>
        <translation>Legen Sie eine Platte in das Gerät.</translation>
    </message>
    <message id="Plate detection tells whether there is a plate, when it is asked and when one comes.">
        <source></source>
        <translation>Die Plattenerkennung sagt, ob eine Platte da ist: wenn sie gefragt wird, und wenn eine kommt.</translation>
    </message>
    <message id="Front ends show the slot, and warn of a measurement without a plate.">
        <source></source>
        <translation>Anwendungen zeigen den Schacht und warnen vor einer Messung ohne Platte.</translation>
    </message>
    <message id="Emit transientValue(DF_PlateDetection, ...) with the SlotStatus whenever it changes.">
        <source></source>
        <translation>Senden Sie transientValue(DF_PlateDetection, ...) mit dem SlotStatus, wann immer er sich ändert.</translation>
    </message>
    <message id="The device of an instrument that is unplugged during a run closes within 10 s, with ERROR_DEVICE_DISCONNECTED.">
        <source></source>
        <translation>Das Geräteobjekt eines Geräts, dessen Stecker in einem Lauf gezogen wird, schließt binnen 10 s mit ERROR_DEVICE_DISCONNECTED.</translation>
    </message>
    <message id="Nobody else can tell the user that the cable is loose.">
        <source></source>
        <translation>Sonst kann niemand dem Benutzer sagen, dass das Kabel lose ist.</translation>
    </message>
    <message id="On an error of the connection, or when the instrument stops answering: setError(ERROR_DEVICE_DISCONNECTED, ...), then setStatus({}).">
        <source></source>
        <translation>Bei einem Fehler der Verbindung, oder wenn das Gerät nicht mehr antwortet: setError(ERROR_DEVICE_DISCONNECTED, ...), dann setStatus({}).</translation>
    </message>
    <message id="A run that is cut short by unplugging ends once with executed(feature, false), after the device is closed and idle.">
        <source></source>
        <translation>Ein Lauf, den der gezogene Stecker abbricht, endet einmal mit executed(feature, false), nachdem das Geräteobjekt geschlossen und untätig ist.</translation>
    </message>
    <message id="Whoever waits for the ending would wait for ever, or take it for a measurement.">
        <source></source>
        <translation>Wer auf das Ende wartet, wartete sonst ewig oder hielte es für eine Messung.</translation>
    </message>
    <message id="An instrument that is unplugged is not listed.">
        <source></source>
        <translation>Ein Gerät, dessen Stecker gezogen ist, wird nicht aufgeführt.</translation>
    </message>
    <message id="A user who chooses it gets nothing but an error.">
        <source></source>
        <translation>Wer es auswählt, bekommt nichts als einen Fehler.</translation>
    </message>
    <message id="Ask the system for what is connected each time availableDevices() is called.">
        <source></source>
        <translation>Fragen Sie bei jedem Aufruf von availableDevices() das System, was angeschlossen ist.</translation>
    </message>
    <message id="An instrument that is plugged in again is listed again, and opens.">
        <source></source>
        <translation>Ein Gerät, das wieder eingesteckt ist, wird wieder aufgeführt und lässt sich öffnen.</translation>
    </message>
    <message id="A loose cable must not cost a restart.">
        <source></source>
        <translation>Ein loses Kabel darf keinen Neustart kosten.</translation>
    </message>
    <message id="Let go of the port and of everything that was remembered when the connection is lost.">
        <source></source>
        <translation>Geben Sie den Anschluss und alles Gemerkte frei, wenn die Verbindung verloren ist.</translation>
    </message>
    <message id="Forget the run, and emit executed(feature, false) for it last.">
        <source></source>
        <translation>Vergessen Sie den Lauf, und senden Sie zuletzt executed(feature, false) für ihn.</translation>
    </message>
    <message id="The side that faces up is the one that the acceleration at rest points to.">
        <source></source>
        <translation>Die Seite, die nach oben zeigt, ist die, in deren Richtung die Beschleunigung in Ruhe zeigt.</translation>
    </message>
    <message id="One of the two is wrong, and the user is told to turn an instrument that stands upright.">
        <source></source>
        <translation>Eines von beiden ist falsch, und der Benutzer soll ein Gerät umdrehen, das richtig steht.</translation>
    </message>
    <message id="Turn the axes of the sensor into those of the instrument: x to its right, y to its back, z up.">
        <source></source>
        <translation>Rechnen Sie die Achsen des Sensors in die des Geräts um: x nach rechts, y nach hinten, z nach oben.</translation>
    </message>
    <message id="A run leaves no thread and no open file behind.">
        <source></source>
        <translation>Ein Lauf lässt keinen Thread und keine offene Datei zurück.</translation>
    </message>
    <message id="After some hundred plates the process can open no more files, and all fails at once.">
        <source></source>
        <translation>Nach einigen hundert Platten kann der Prozess keine Datei mehr öffnen, und alles scheitert auf einmal.</translation>
    </message>
    <message id="Close what a run opens on every way out of it.">
        <source></source>
        <translation>Schließen Sie, was ein Lauf öffnet, auf jedem Weg aus ihm heraus.</translation>
    </message>
</context>
</TS>
