<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name></name>
    <message id="qelctl-details">
        <source></source>
        <translation>Finds, opens and drives plate readers.

  qelctl list
  qelctl run SERIAL absorbance --output plate.csv --format csv

'qelctl COMMAND --help' tells all about a command.

Exit codes: 0 done, 1 run failed, 2 wrong usage, 3 no such device or feature, 4 cannot open, 5 device error, 6 timed out, 7 aborted by the user, 8 cannot write the output, 9 not all rules could be judged, 10 a driver has crashed, 130 interrupted.</translation>
    </message>
    <message id="qelctl-commands">
        <source></source>
        <translation>Commands:</translation>
    </message>
    <message id="qelctl-option-help">
        <source></source>
        <translation>Show this help.</translation>
    </message>
    <message id="qelctl-option-version">
        <source></source>
        <translation>Show the version.</translation>
    </message>
    <message id="qelctl-option-plugins">
        <source></source>
        <translation>Look for driver plugins below DIR as well. Its drivers take precedence.</translation>
    </message>
    <message id="qelctl-option-lang">
        <source></source>
        <translation>Speak the language of LOCALE, such as de or en.</translation>
    </message>
    <message id="qelctl-option-log">
        <source></source>
        <translation>Show the library's messages from this level on, on standard error.</translation>
    </message>
    <message id="qelctl-option-color">
        <source></source>
        <translation>When to use colour.</translation>
    </message>
    <message id="qelctl-option-json">
        <source></source>
        <translation>Print JSON for programs instead of text for people.</translation>
    </message>
    <message id="qelctl-argument-command">
        <source></source>
        <translation>What to do.</translation>
    </message>
    <message id="qelctl-argument-device">
        <source></source>
        <translation>A serial number, DRIVER/LOCATION, or a beginning of either or of the name.</translation>
    </message>
    <message id="qelctl-argument-feature">
        <source></source>
        <translation>A feature such as absorbance-measurement, or a beginning of one.</translation>
    </message>
    <message id="qelctl-usage">
        <source></source>
        <translation>Usage: %1 [OPTIONS]</translation>
    </message>
    <message id="qelctl-arguments">
        <source></source>
        <translation>Arguments:</translation>
    </message>
    <message id="qelctl-options">
        <source></source>
        <translation>Options:</translation>
    </message>
    <message id="qelctl-placeholder-command">
        <source></source>
        <translation>COMMAND</translation>
    </message>
    <message id="qelctl-placeholder-device">
        <source></source>
        <translation>DEVICE</translation>
    </message>
    <message id="qelctl-placeholder-dir">
        <source></source>
        <translation>DIR</translation>
    </message>
    <message id="qelctl-placeholder-directory">
        <source></source>
        <translation>DIRECTORY</translation>
    </message>
    <message id="qelctl-placeholder-feature">
        <source></source>
        <translation>FEATURE</translation>
    </message>
    <message id="qelctl-placeholder-file">
        <source></source>
        <translation>FILE</translation>
    </message>
    <message id="qelctl-placeholder-key">
        <source></source>
        <translation>KEY</translation>
    </message>
    <message id="qelctl-placeholder-link">
        <source></source>
        <translation>LINK</translation>
    </message>
    <message id="qelctl-placeholder-locale">
        <source></source>
        <translation>LOCALE</translation>
    </message>
    <message id="qelctl-placeholder-path">
        <source></source>
        <translation>PATH</translation>
    </message>
    <message id="qelctl-placeholder-seconds">
        <source></source>
        <translation>SECONDS</translation>
    </message>
    <message id="qelctl-placeholder-serial">
        <source></source>
        <translation>SERIAL</translation>
    </message>
    <message id="qelctl-placeholder-value">
        <source></source>
        <translation>VALUE</translation>
    </message>
    <message id="qelctl-option-unknown">
        <source></source>
        <translation>There is no option %1 here. See '%2 --help'.</translation>
    </message>
    <message id="qelctl-option-misplaced">
        <source></source>
        <translation>The option %1 stands before the command. See 'qelctl --help'.</translation>
    </message>
    <message id="qelctl-option-without-value">
        <source></source>
        <translation>The option %1 takes no value. See '%2 --help'.</translation>
    </message>
    <message id="qelctl-option-needs-value">
        <source></source>
        <translation>A value is missing behind %1. See '%2 --help'.</translation>
    </message>
    <message id="qelctl-progress-remaining">
        <source></source>
        <translation>%1 left</translation>
    </message>
    <message id="qelctl-reader-gone">
        <source></source>
        <translation>Nobody reads the standard output any more.</translation>
    </message>
    <message id="qelctl-taken">
        <source></source>
        <translation>Taking %1.</translation>
    </message>
    <message id="qelctl-run-unfinished">
        <source></source>
        <translation>The driver has ended the event loop of the tool before the run had ended.</translation>
    </message>
    <message id="qelctl-driver-crashed">
        <source></source>
        <translation>A driver has crashed</translation>
    </message>
    <message id="qelctl-driver-hangs">
        <source></source>
        <translation>A driver does not return from a call</translation>
    </message>
    <message id="qelctl-driver-exits">
        <source></source>
        <translation>A driver has ended the process</translation>
    </message>
    <message id="qelctl-driver-event">
        <source></source>
        <translation>event loop</translation>
    </message>
    <message id="qelctl-no-plain-file">
        <source></source>
        <translation>%1 is no plain file; a pipe or a device might never end.</translation>
    </message>
    <message id="qelctl-run-no-separator">
        <source></source>
        <translation>--%1 takes one of , ; . | tab and space, not ‘%2’.</translation>
    </message>
    <message id="qelctl-run-same-separators">
        <source></source>
        <translation>The delimiter and the decimal point are the same character; give --delimiter or --decimal another one.</translation>
    </message>
    <message id="qelctl-run-format-suffix">
        <source></source>
        <translation>A file called %1 does not hold the format %2; change one of them.</translation>
    </message>
    <message id="qelctl-run-interval-alone">
        <source></source>
        <translation>--interval goes with --repeat.</translation>
    </message>
    <message id="qelctl-run-no-such-progress">
        <source></source>
        <translation>There is no progress ‘%1’; there is json.</translation>
    </message>
    <message id="qelctl-run-option-exact">
        <source></source>
        <translation>Take DEVICE only as a whole serial, path or name, as scripts do anyway.</translation>
    </message>
    <message id="qelctl-run-option-delimiter">
        <source></source>
        <translation>Between the values of csv and plate: , (the default) ; | tab.</translation>
    </message>
    <message id="qelctl-run-option-decimal">
        <source></source>
        <translation>The decimal point in csv and plate: . (the default) or ,.</translation>
    </message>
    <message id="qelctl-run-option-note">
        <source></source>
        <translation>A note that goes with the result in every format.</translation>
    </message>
    <message id="qelctl-run-option-resume">
        <source></source>
        <translation>Go on with the series in the file of --output (csv or json) after its last finished run.</translation>
    </message>
    <message id="qelctl-run-option-progress">
        <source></source>
        <translation>Write the progress to standard error as JSON, one line each.</translation>
    </message>
    <message id="qelctl-run-no-placeholder">
        <source></source>
        <translation>The name of a file knows {serial}, {name}, {feature} and {time}, not %1.</translation>
    </message>
    <message id="qelctl-run-resume-what">
        <source></source>
        <translation>--resume goes with --repeat and a file in --output.</translation>
    </message>
    <message id="qelctl-run-resume-format">
        <source></source>
        <translation>Only a series in csv or json can be resumed; the other formats do not tell the runs apart.</translation>
    </message>
    <message id="qelctl-run-resume-other">
        <source></source>
        <translation>%1 holds runs of another instrument.</translation>
    </message>
    <message id="qelctl-run-resume-line">
        <source></source>
        <translation>%1 cannot be resumed: line %2 belongs to no run of this instrument and feature. Nothing has been changed.</translation>
    </message>
    <message id="qelctl-run-resume-none">
        <source></source>
        <translation>%1 does not hold a series of runs.</translation>
    </message>
    <message id="qelctl-run-interval-short">
        <source></source>
        <translation>A run takes longer than the interval; the next one begins at once.</translation>
    </message>
    <message id="qelctl-run-printed-instead">
        <source></source>
        <translation>The result is printed on standard output instead.</translation>
    </message>
    <message id="qelctl-run-delivered-kept">
        <source></source>
        <translation>What the device delivered instead of a result is kept in %1.</translation>
    </message>
    <message id="qelctl-run-delivered-printed">
        <source></source>
        <translation>What the device delivered instead of a result:</translation>
    </message>
    <message id="qelctl-no-watchdog">
        <source></source>
        <translation>Drivers that hang will not be noticed: the system refuses another thread.</translation>
    </message>
    <message id="qelctl-run-resume-setting">
        <source></source>
        <translation>The runs in the file '%1' were made with another value of the setting "%2". Continue with the same, or choose another file.</translation>
    </message>
    <message id="qelctl-run-kept">
        <source></source>
        <translation>%1 of %2 runs are finished and kept in %3; --resume goes on with them.</translation>
    </message>
    <message id="qelctl-run-next">
        <source></source>
        <translation>Run %1 of %2 begins at %3.</translation>
    </message>
    <message id="qelctl-run-heading">
        <source></source>
        <translation>Run %1 of %2, %3</translation>
    </message>
    <message id="qelctl-run-no-file">
        <source></source>
        <translation>--output takes the name of a file.</translation>
    </message>
    <message id="qelctl-argument-missing">
        <source></source>
        <translation>%1 is missing. See '%2 --help'.</translation>
    </message>
    <message id="qelctl-argument-surplus">
        <source></source>
        <translation>The argument '%1' is one too many. See '%2 --help'.</translation>
    </message>
    <message id="qelctl-not-a-count">
        <source></source>
        <translation>--%1 takes a whole number from %3 on, not '%2'.</translation>
    </message>
    <message id="qelctl-not-a-time">
        <source></source>
        <translation>--%1 takes a time in seconds, such as 90 or 0.5, not '%2'.</translation>
    </message>
    <message id="qelctl-no-command">
        <source></source>
        <translation>Say what to do, for instance 'qelctl list'. See 'qelctl --help'.</translation>
    </message>
    <message id="qelctl-no-such-command">
        <source></source>
        <translation>There is no command '%1'. Choose one of: %2.</translation>
    </message>
    <message id="qelctl-no-such-level">
        <source></source>
        <translation>--log takes quiet, warning, info or debug, not '%1'.</translation>
    </message>
    <message id="qelctl-no-such-color">
        <source></source>
        <translation>--color takes auto, always or never, not '%1'.</translation>
    </message>
    <message id="qelctl-no-such-driver">
        <source></source>
        <translation>There is no driver '%1'. Loaded are: %2.</translation>
    </message>
    <message id="qelctl-no-such-interface">
        <source></source>
        <translation>There is no interface '%1'. Choose one of: %2.</translation>
    </message>
    <message id="qelctl-not-created">
        <source></source>
        <translation>%1: the driver '%2' knows the instrument no longer. Run 'qelctl list' again.</translation>
    </message>
    <message id="qelctl-interrupted">
        <source></source>
        <translation>Interrupted; there is no result.</translation>
    </message>
    <message id="qelctl-file-exists">
        <source></source>
        <translation>The file '%1' exists already. Choose another name, or replace it with --force.</translation>
    </message>
    <message id="qelctl-cannot-print">
        <source></source>
        <translation>Cannot write to the standard output: %1.</translation>
    </message>
    <message id="qelctl-cannot-write">
        <source></source>
        <translation>Cannot write to the file '%1': %2.</translation>
    </message>
    <message id="qelctl-cannot-read">
        <source></source>
        <translation>Cannot read the file '%1': %2.</translation>
    </message>
    <message id="qelctl-column-name">
        <source></source>
        <translation>Name</translation>
    </message>
    <message id="qelctl-column-serial">
        <source></source>
        <translation>Serial</translation>
    </message>
    <message id="qelctl-column-device">
        <source></source>
        <translation>Device</translation>
    </message>
    <message id="qelctl-column-interface">
        <source></source>
        <translation>Interface</translation>
    </message>
    <message id="qelctl-column-state">
        <source></source>
        <translation>State</translation>
    </message>
    <message id="qelctl-column-error">
        <source></source>
        <translation>Error</translation>
    </message>
    <message id="qelctl-column-features">
        <source></source>
        <translation>Features</translation>
    </message>
    <message id="qelctl-column-driver">
        <source></source>
        <translation>Driver</translation>
    </message>
    <message id="qelctl-column-version">
        <source></source>
        <translation>Version</translation>
    </message>
    <message id="qelctl-column-manufacturer">
        <source></source>
        <translation>Manufacturer</translation>
    </message>
    <message id="qelctl-column-file">
        <source></source>
        <translation>File</translation>
    </message>
    <message id="qelctl-state-closed">
        <source></source>
        <translation>closed</translation>
    </message>
    <message id="qelctl-state-idle">
        <source></source>
        <translation>open, idle</translation>
    </message>
    <message id="qelctl-state-busy">
        <source></source>
        <translation>open, busy</translation>
    </message>
    <message id="qelctl-list-summary">
        <source></source>
        <translation>List the instruments</translation>
    </message>
    <message id="qelctl-list-details">
        <source></source>
        <translation>Lists the instruments that can be opened now.</translation>
    </message>
    <message id="qelctl-list-option-driver">
        <source></source>
        <translation>Only instruments of driver D. May be repeated.</translation>
    </message>
    <message id="qelctl-list-option-interface">
        <source></source>
        <translation>Only instruments connected by I: simulator, serial, usb-hid, network.</translation>
    </message>
    <message id="qelctl-list-option-watch">
        <source></source>
        <translation>Go on, and print a line whenever an instrument comes or goes. Ctrl-C ends it.</translation>
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
        <translation>No instruments found. Connect one and switch it on; 'qelctl drivers' shows which can be driven.</translation>
    </message>
    <message id="qelctl-list-no-drivers">
        <source></source>
        <translation>No drivers found. Install one, or point at its folder with --plugins DIR.</translation>
    </message>
    <message id="qelctl-drivers-summary">
        <source></source>
        <translation>List the driver plugins</translation>
    </message>
    <message id="qelctl-drivers-details">
        <source></source>
        <translation>Lists the driver plugins that were loaded, and the files that were not with the reason.</translation>
    </message>
    <message id="qelctl-drivers-no-interface">
        <source></source>
        <translation>It is a plugin, but not for device drivers.</translation>
    </message>
    <message id="qelctl-drivers-failure">
        <source></source>
        <translation>Not loaded: %1: %2</translation>
    </message>
    <message id="qelctl-show-summary">
        <source></source>
        <translation>Show what a device is and can do</translation>
    </message>
    <message id="qelctl-show-details">
        <source></source>
        <translation>Opens a device and shows its identity, state, error and features with their settings.</translation>
    </message>
    <message id="qelctl-show-plate">
        <source></source>
        <translation>%1 × %2 wells</translation>
    </message>
    <message id="qelctl-show-range">
        <source></source>
        <translation>%1 to %2 %3</translation>
    </message>
    <message id="qelctl-show-default">
        <source></source>
        <translation>%1 (default: %2)</translation>
    </message>
    <message id="qelctl-show-all">
        <source></source>
        <translation>all</translation>
    </message>
    <message id="qelctl-show-empty-list">
        <source></source>
        <translation>none</translation>
    </message>
    <message id="qelctl-watch-summary">
        <source></source>
        <translation>Print what a device reports</translation>
    </message>
    <message id="qelctl-watch-details">
        <source></source>
        <translation>Opens a device and prints every signal as it comes, one JSON object a line. Ctrl-C ends it.</translation>
    </message>
    <message id="qelctl-watch-closed">
        <source></source>
        <translation>%1 has closed.</translation>
    </message>
    <message id="qelctl-run-summary">
        <source></source>
        <translation>Run a feature, such as a measurement</translation>
    </message>
    <message id="qelctl-run-details">
        <source></source>
        <translation>Opens a device, runs a feature and prints the result.

  qelctl run SIM-A-0001 absorbance-measurement --set wavelengths=450,620
  qelctl run SIM-A-0001 absorbance --format csv --output plate.csv

'qelctl show DEVICE' lists the features and their settings.</translation>
    </message>
    <message id="qelctl-run-option-config">
        <source></source>
        <translation>The settings as a JSON object, or the file that holds it.</translation>
    </message>
    <message id="qelctl-run-option-set">
        <source></source>
        <translation>One setting, such as wavelengths=450,620. May be repeated.</translation>
    </message>
    <message id="qelctl-run-option-timeout">
        <source></source>
        <translation>Give up a run after S seconds; without it, after 10 minutes without progress.</translation>
    </message>
    <message id="qelctl-run-option-yes">
        <source></source>
        <translation>Confirm what the device asks the user to do, without asking.</translation>
    </message>
    <message id="qelctl-run-option-no-input">
        <source></source>
        <translation>Turn down what the device asks the user to do, without asking.</translation>
    </message>
    <message id="qelctl-run-option-format">
        <source></source>
        <translation>table for people, plate for CSV in the shape of the plate, csv for one line a well, json for everything.</translation>
    </message>
    <message id="qelctl-run-option-output">
        <source></source>
        <translation>Write the result to FILE instead of the standard output; its suffix decides the format. FILE may hold {serial}, {name}, {feature} and {time}.</translation>
    </message>
    <message id="qelctl-run-option-force">
        <source></source>
        <translation>Replace FILE if it exists.</translation>
    </message>
    <message id="qelctl-run-option-repeat">
        <source></source>
        <translation>Run N times.</translation>
    </message>
    <message id="qelctl-run-option-interval">
        <source></source>
        <translation>Start each run S seconds after the start of the one before.</translation>
    </message>
    <message id="qelctl-run-option-no-progress">
        <source></source>
        <translation>Show no progress bar.</translation>
    </message>
    <message id="qelctl-run-config-no-object">
        <source></source>
        <translation>--config takes a JSON object such as {"rapidMode":true}. %1</translation>
    </message>
    <message id="qelctl-run-yes-and-no">
        <source></source>
        <translation>--yes and --no-input exclude each other.</translation>
    </message>
    <message id="qelctl-run-no-such-format">
        <source></source>
        <translation>--format takes table, plate, csv or json, not '%1'.</translation>
    </message>
    <message id="qelctl-run-no-plate">
        <source></source>
        <translation>The result of %1 is no plate. Use --format table or json.</translation>
    </message>
    <message id="qelctl-prompt">
        <source></source>
        <translation>%1 [Enter: done, n: abort]</translation>
    </message>
    <message id="qelctl-prompt-no-terminal">
        <source></source>
        <translation>Nobody can be asked here. Confirm beforehand with --yes.</translation>
    </message>
    <message id="qelctl-doctor-summary">
        <source></source>
        <translation>Tell why plugin files are or are not usable drivers</translation>
    </message>
    <message id="qelctl-doctor-details">
        <source></source>
        <translation>Tells of each file at PATH, or below it, whether it is a usable driver plugin, and if not, why and
what to do. These files are not loaded.

Without PATH it examines the folders in which the tool looks for drivers, and in a process
of its own loads the plugins there, to tell which drivers they hold and which one replaces another.

Exit codes: 0 everything is usable, 1 something is not, 2 wrong usage.</translation>
    </message>
    <message id="qelctl-doctor-argument">
        <source></source>
        <translation>A plugin file, or a folder of them.</translation>
    </message>
    <message id="qelctl-doctor-usable">
        <source></source>
        <translation>usable</translation>
    </message>
    <message id="qelctl-doctor-usable-with-warnings">
        <source></source>
        <translation>usable, with warnings</translation>
    </message>
    <message id="qelctl-doctor-not-usable">
        <source></source>
        <translation>not usable</translation>
    </message>
    <message id="qelctl-doctor-folder">
        <source></source>
        <translation>Folder %1:</translation>
    </message>
    <message id="qelctl-doctor-no-folder">
        <source></source>
        <translation>Folder %1: does not exist</translation>
    </message>
    <message id="qelctl-doctor-empty-folder">
        <source></source>
        <translation>Folder %1: holds no plugin files</translation>
    </message>
    <message id="qelctl-check-summary">
        <source></source>
        <translation>Hold a driver plugin to the rules for drivers</translation>
    </message>
    <message id="qelctl-check-details">
        <source></source>
        <translation>Loads PLUGIN and judges rule by rule whether its driver keeps its contract. What a rule says, why, and
what to do about it is shown with every failure. The plugin runs in a process of its own.

The exit code is 0 when no rule is broken, 1 when one is, and 9 when none is but something that should have
been judged could not be: the instrument is missing, or a feature never succeeded. Rules left out on purpose
do not count.</translation>
    </message>
    <message id="qelctl-check-argument">
        <source></source>
        <translation>A plugin file.</translation>
    </message>
    <message id="qelctl-check-option-driver">
        <source></source>
        <translation>The driver to check; needed where PLUGIN has several.</translation>
    </message>
    <message id="qelctl-check-option-device">
        <source></source>
        <translation>The instrument to check the driver with; the first one otherwise.</translation>
    </message>
    <message id="qelctl-check-option-rule">
        <source></source>
        <translation>Judge rule N only. May be given several times.</translation>
    </message>
    <message id="qelctl-check-option-isolated">
        <source></source>
        <translation>Judge the driver as applications see it when it is isolated, from outside of its process.</translation>
    </message>
    <message id="qelctl-check-option-unsafe">
        <source></source>
        <translation>Also judge what moves parts of the instrument.</translation>
    </message>
    <message id="qelctl-check-option-yes">
        <source></source>
        <translation>Confirm requests for action at once; otherwise a person at the terminal is asked, and without one they are turned down.</translation>
    </message>
    <message id="qelctl-check-option-guided">
        <source></source>
        <translation>Also judge what takes hands: ask the person at the terminal to pull the plug of the instrument, to put it in again, and to move a plate.</translation>
    </message>
    <message id="qelctl-check-option-run-limit">
        <source></source>
        <translation>How long a run may go on without its progress rising; 120 s unless given.</translation>
    </message>
    <message id="qelctl-check-option-soak">
        <source></source>
        <translation>Instead, call the device in random sequences for DURATION, such as 90s, 10m or 2h, and make a sequence that shows a fault as short as possible.</translation>
    </message>
    <message id="qelctl-check-option-seed">
        <source></source>
        <translation>The seed of the random sequences, to repeat them; the report names it.</translation>
    </message>
    <message id="qelctl-check-option-format">
        <source></source>
        <translation>How to print the report; text unless given.</translation>
    </message>
    <message id="qelctl-check-no-such-rule">
        <source></source>
        <translation>There is no rule '%1'. See docs/conformance-rules.md.</translation>
    </message>
    <message id="qelctl-check-no-such-limit">
        <source></source>
        <translation>'%1' is no limit. Give whole seconds, from 1 to 86400.</translation>
    </message>
    <message id="qelctl-check-nobody-there">
        <source></source>
        <translation>--guided asks somebody at the instrument to unplug it and the like. Run it at a terminal.</translation>
    </message>
    <message id="qelctl-check-ask">
        <source></source>
        <translation>%1 Done? [Y/n]</translation>
    </message>
    <message id="qelctl-check-not-in-soak">
        <source></source>
        <translation>--%1 does not go with --soak, which tries sequences instead of rules and prints text. Leave out one of the two.</translation>
    </message>
    <message id="qelctl-check-no-such-duration">
        <source></source>
        <translation>'%1' is no duration: give 90s, 10m or 2h, for instance</translation>
    </message>
    <message id="qelctl-check-no-such-seed">
        <source></source>
        <translation>'%1' is no seed: give a whole number</translation>
    </message>
    <message id="qelctl-check-no-such-format">
        <source></source>
        <translation>There is no format '%1'. Use text, json or junit.</translation>
    </message>
    <message id="qelctl-check-no-isolation">
        <source></source>
        <translation>The driver plugin 'isolation.so' is in none of the plugin folders; it comes with qeldevicesd.</translation>
    </message>
    <message id="qelctl-check-no-file">
        <source></source>
        <translation>There is no file '%1'.</translation>
    </message>
    <message id="qelctl-new-driver-summary">
        <source></source>
        <translation>Write the beginnings of a driver</translation>
    </message>
    <message id="qelctl-new-driver-details">
        <source></source>
        <translation>Writes a small driver called NAME into DIRECTORY, which must be empty or not there. It can be built and
keeps the rules; what it does not know is the protocol of your instrument. Look for PROTOCOL in its sources.</translation>
    </message>
    <message id="qelctl-new-driver-argument-name">
        <source></source>
        <translation>The driver's name: lower case letters, digits, - and _.</translation>
    </message>
    <message id="qelctl-new-driver-argument-directory">
        <source></source>
        <translation>Where to write it; NAME unless given.</translation>
    </message>
    <message id="qelctl-new-driver-option-link">
        <source></source>
        <translation>How the driver reaches its instrument: none (it plays one), serial or tcp; the last two with an emulator of the instrument.</translation>
    </message>
    <message id="qelctl-new-driver-no-link">
        <source></source>
        <translation>There is no link '%1'; there are none, serial and tcp.</translation>
    </message>
    <message id="qelctl-new-driver-no-name">
        <source></source>
        <translation>'%1' cannot be the name of a driver. Use a lower case letter, then such letters, digits, - and _, but no name that CMake keeps for itself, such as test.</translation>
    </message>
    <message id="qelctl-new-driver-not-empty">
        <source></source>
        <translation>The folder '%1' is not empty. Name another one.</translation>
    </message>
    <message id="qelctl-new-driver-no-folder">
        <source></source>
        <translation>Cannot make the folder '%1'.</translation>
    </message>
    <message id="qelctl-new-driver-cannot-write">
        <source></source>
        <translation>Cannot write '%1': %2.</translation>
    </message>
    <message id="qelctl-new-driver-done">
        <source></source>
        <translation>A driver stands in '%1'. Build and check it:

    cmake -S %1 -B %1/build
    cmake --build %1/build
    qelctl check --unsafe %1/build/devicedrivers/%2.so

Then put your protocol where its sources say PROTOCOL.
</translation>
    </message>
    <message id="qelctl-network-missing">
        <source></source>
        <translation>Instruments on other machines need the driver 'Network', which is not installed.</translation>
    </message>
    <message id="qelctl-argument-invitation">
        <source></source>
        <translation>The file that 'qeldevicesd invite' has printed.</translation>
    </message>
    <message id="qelctl-connect-option-local">
        <source></source>
        <translation>Connect to the server of this machine, which needs no invitation.</translation>
    </message>
    <message id="qelctl-argument-server">
        <source></source>
        <translation>The name of the server, as 'qelctl servers' shows it.</translation>
    </message>
    <message id="qelctl-connect-away">
        <source></source>
        <translation>The connection to '%1' is stored, but the server is away: %2</translation>
    </message>
    <message id="qelctl-connect-kept">
        <source></source>
        <translation>This invitation does not replace the stored connection to '%1': %2</translation>
    </message>
    <message id="qelctl-server-away">
        <source></source>
        <translation>The server '%1' is away: %2</translation>
    </message>
    <message id="qelctl-connected">
        <source></source>
        <translation>Connected to '%1'. It has these instruments:</translation>
    </message>
    <message id="qelctl-no-such-server">
        <source></source>
        <translation>There is no connection to a server '%1'.</translation>
    </message>
    <message id="qelctl-column-server">
        <source></source>
        <translation>Server</translation>
    </message>
    <message id="qelctl-column-address">
        <source></source>
        <translation>Address</translation>
    </message>
    <message id="qelctl-server-there">
        <source></source>
        <translation>%1 instruments</translation>
    </message>
    <message id="qelctl-connect-summary">
        <source></source>
        <translation>Use the instruments of another machine</translation>
    </message>
    <message id="qelctl-connect-details">
        <source></source>
        <translation>Stores an invitation to the instruments of another machine and lists them. They are used like those of this machine from then on.

On the other machine, 'qeldevicesd invite NAME' prints the invitation. It holds a key: whoever has the file is let in.</translation>
    </message>
    <message id="qelctl-disconnect-summary">
        <source></source>
        <translation>Forget the instruments of another machine</translation>
    </message>
    <message id="qelctl-disconnect-details">
        <source></source>
        <translation>Deletes the stored connection to a server. To use it again takes its invitation.</translation>
    </message>
    <message id="qelctl-servers-summary">
        <source></source>
        <translation>List the servers this user is connected to</translation>
    </message>
    <message id="qelctl-servers-details">
        <source></source>
        <translation>Lists the servers whose invitations are stored, and says of each how many instruments it has or why it is away.</translation>
    </message>
    <message id="qelctl-column-result">
        <source></source>
        <translation>Result</translation>
    </message>
    <message id="qelctl-no-such-result">
        <source></source>
        <translation>No server keeps a result '%1' for you.</translation>
    </message>
    <message id="qelctl-argument-result">
        <source></source>
        <translation>A result, as 'qelctl results' lists it. Without one, all are listed.</translation>
    </message>
    <message id="qelctl-results-option-output">
        <source></source>
        <translation>Write the result to FILE. Default: standard output.</translation>
    </message>
    <message id="qelctl-results-summary">
        <source></source>
        <translation>List and fetch results that have not reached you</translation>
    </message>
    <message id="qelctl-results-details">
        <source></source>
        <translation>A server keeps the result of a run whose connection broke before the result had arrived. Lists what the servers keep for you; with RESULT, prints that result as 'qelctl run --format json' would have.

The results stay on the server.</translation>
    </message>
    <message id="qelctl-column-feature">
        <source></source>
        <translation>Feature</translation>
    </message>
</context>
</TS>
