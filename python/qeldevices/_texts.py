"""The sentences that this package says itself, in English and German. The library translates its own."""

from __future__ import annotations

_GERMAN = {
    "The device does not have the feature.": "Das Gerät hat diese Funktion nicht.",
    "The device does not measure.": "Das Gerät misst nicht.",
    "The driver does not know the instrument '{text}' any more.":
        "Der Treiber kennt das Gerät „{text}“ nicht mehr.",
    "Which feature? There are {names}.": "Welche Funktion? Es gibt {names}.",
    "The reader has been closed.": "Das Gerät wurde geschlossen.",
    "The detector's maximum is not known.": "Der Höchstwert des Detektors ist nicht bekannt.",
    "{place}: not written to its end": "{place}: nicht zu Ende geschrieben",
    "settings cannot be written: {problem}": "Einstellungen lassen sich nicht schreiben: {problem}",
    "{text} Done? [Y/n] ": "{text} Erledigt? [J/n] ",
    "The library has been started already; call start() before anything else.":
        "Die Bibliothek läuft schon; rufen Sie start() vor allem anderen auf.",
    "There is no plugin folder '{folder}'.": "Es gibt keinen Plugin-Ordner „{folder}“.",
    "This process was forked from one that uses qeldevices, whose instruments stay there. Start "
    "processes with multiprocessing's 'spawn' method.":
        "Dieser Prozess stammt mit fork() von einem ab, der qeldevices benutzt; dessen Geräte "
        "bleiben dort. Starten Sie Prozesse mit der Methode „spawn“ von multiprocessing.",
    "The interpreter is exiting.": "Der Interpreter wird gerade beendet.",
    "this process has a Qt application whose event loop does not run; start its exec(), or use "
    "qeldevices from the application's thread":
        "dieser Prozess hat eine Qt-Anwendung, deren Ereignisschleife nicht läuft; rufen Sie ihr "
        "exec() auf, oder benutzen Sie qeldevices in ihrem Thread",
}

_is_german = False


def use_language(language: str) -> None:
    global _is_german
    _is_german = language[:2].lower() == "de"


def say(english: str, **places: object) -> str:
    """The sentence in the language of start(), with `places` filled in."""
    sentence = _GERMAN.get(english, english) if _is_german else english
    return sentence.format(**places) if places else sentence
