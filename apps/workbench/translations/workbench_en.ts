<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name></name>
    <message id="qelworkbench-above-blank">
        <source></source>
        <translation>%1 above blank</translation>
    </message>
    <message id="qelworkbench-action-find">
        <source></source>
        <translation>Find in history</translation>
    </message>
    <message id="qelworkbench-action-folder">
        <source></source>
        <translation>Choose the folder for results…</translation>
    </message>
    <message id="qelworkbench-action-quit">
        <source></source>
        <translation>Quit</translation>
    </message>
    <message id="qelworkbench-all-wells">
        <source></source>
        <translation>All wells</translation>
    </message>
    <message id="qelworkbench-blank-tip">
        <source></source>
        <translation>Shows the values less the mean of the blanks. What is kept stays as it was measured.</translation>
    </message>
    <message id="qelworkbench-cancel">
        <source></source>
        <translation>Cancel</translation>
    </message>
    <message id="qelworkbench-delivered-kept">
        <source></source>
        <translation>What the instrument delivered is kept in the folder as "%1".</translation>
    </message>
    <message id="qelworkbench-cancelled">
        <source></source>
        <translation>Cancelled. What had been measured to the end is kept.</translation>
    </message>
    <message id="qelworkbench-cannot-read">
        <source></source>
        <translation>The file “%1” cannot be read: %2.</translation>
    </message>
    <message id="qelworkbench-cannot-write">
        <source></source>
        <translation>The file “%1” cannot be written: %2.</translation>
    </message>
    <message id="qelworkbench-close-anyway">
        <source></source>
        <translation>Close</translation>
    </message>
    <message id="qelworkbench-close-busy">
        <source></source>
        <translation>A measurement is under way. Closing the window ends it; the runs that are finished are kept.</translation>
    </message>
    <message id="qelworkbench-close-stay">
        <source></source>
        <translation>Go on measuring</translation>
    </message>
    <message id="qelworkbench-close-unkept">
        <source></source>
        <translation>%1 finished runs could not be kept on disk. Closing the window loses them.</translation>
    </message>
    <message id="qelworkbench-column-column">
        <source></source>
        <translation>Column</translation>
    </message>
    <message id="qelworkbench-column-content">
        <source></source>
        <translation>Content</translation>
    </message>
    <message id="qelworkbench-column-file">
        <source></source>
        <translation>File</translation>
    </message>
    <message id="qelworkbench-column-instrument">
        <source></source>
        <translation>Instrument</translation>
    </message>
    <message id="qelworkbench-column-library">
        <source></source>
        <translation>Library</translation>
    </message>
    <message id="qelworkbench-column-maximum">
        <source></source>
        <translation>Detector’s maximum</translation>
    </message>
    <message id="qelworkbench-column-measurement">
        <source></source>
        <translation>Measurement</translation>
    </message>
    <message id="qelworkbench-column-name">
        <source></source>
        <translation>Name</translation>
    </message>
    <message id="qelworkbench-column-note">
        <source></source>
        <translation>Note</translation>
    </message>
    <message id="qelworkbench-column-read">
        <source></source>
        <translation>Read</translation>
    </message>
    <message id="qelworkbench-column-remark">
        <source></source>
        <translation>Remark</translation>
    </message>
    <message id="qelworkbench-column-row">
        <source></source>
        <translation>Row</translation>
    </message>
    <message id="qelworkbench-column-run">
        <source></source>
        <translation>Run</translation>
    </message>
    <message id="qelworkbench-column-serial">
        <source></source>
        <translation>Serial</translation>
    </message>
    <message id="qelworkbench-column-settings">
        <source></source>
        <translation>Settings</translation>
    </message>
    <message id="qelworkbench-column-temperature">
        <source></source>
        <translation>Temperature, °C</translation>
    </message>
    <message id="qelworkbench-column-time">
        <source></source>
        <translation>Time</translation>
    </message>
    <message id="qelworkbench-column-unit">
        <source></source>
        <translation>Unit</translation>
    </message>
    <message id="qelworkbench-column-value">
        <source></source>
        <translation>Value</translation>
    </message>
    <message id="qelworkbench-column-well">
        <source></source>
        <translation>Well</translation>
    </message>
    <message id="qelworkbench-compare-difference">
        <source></source>
        <translation>B less A. %1. %2</translation>
    </message>
    <message id="qelworkbench-compare-nothing">
        <source></source>
        <translation>These two cannot be compared: they have no read of a plate in common.</translation>
    </message>
    <message id="qelworkbench-compare-plate">
        <source></source>
        <translation>Plate %1</translation>
    </message>
    <message id="qelworkbench-compare-run">
        <source></source>
        <translation>run %1</translation>
    </message>
    <message id="qelworkbench-compare-sizes">
        <source></source>
        <translation>There is no difference between a plate of %1 and one of %2 wells.</translation>
    </message>
    <message id="qelworkbench-compare-units">
        <source></source>
        <translation>There is no difference between values in %1 and in %2.</translation>
    </message>
    <message id="qelworkbench-confirm">
        <source></source>
        <translation>Done, go on</translation>
    </message>
    <message id="qelworkbench-content-blank">
        <source></source>
        <translation>Blank</translation>
    </message>
    <message id="qelworkbench-content-control">
        <source></source>
        <translation>Control</translation>
    </message>
    <message id="qelworkbench-content-sample">
        <source></source>
        <translation>Sample</translation>
    </message>
    <message id="qelworkbench-content-standard">
        <source></source>
        <translation>Standard</translation>
    </message>
    <message id="qelworkbench-copied">
        <source></source>
        <translation>Copied. Paste the plate into a spreadsheet.</translation>
    </message>
    <message id="qelworkbench-copy">
        <source></source>
        <translation>Copy</translation>
    </message>
    <message id="qelworkbench-copy-tip">
        <source></source>
        <translation>Copies the plate as a table for a spreadsheet</translation>
    </message>
    <message id="qelworkbench-curve-time">
        <source></source>
        <translation>Time, s</translation>
    </message>
    <message id="qelworkbench-days">
        <source></source>
        <translation>When</translation>
    </message>
    <message id="qelworkbench-days-all">
        <source></source>
        <translation>At any time</translation>
    </message>
    <message id="qelworkbench-days-month">
        <source></source>
        <translation>Last 31 days</translation>
    </message>
    <message id="qelworkbench-days-today">
        <source></source>
        <translation>Today</translation>
    </message>
    <message id="qelworkbench-days-week">
        <source></source>
        <translation>Last 7 days</translation>
    </message>
    <message id="qelworkbench-days-yesterday">
        <source></source>
        <translation>Yesterday</translation>
    </message>
    <message id="qelworkbench-details">
        <source></source>
        <translation>Measures with laboratory plate readers.</translation>
    </message>
    <message id="qelworkbench-done">
        <source></source>
        <translation>Done.</translation>
    </message>
    <message id="qelworkbench-drivers">
        <source></source>
        <translation>Drivers on this computer</translation>
    </message>
    <message id="qelworkbench-drivers-loaded">
        <source></source>
        <translation>Loaded drivers: %1</translation>
    </message>
    <message id="qelworkbench-export">
        <source></source>
        <translation>Export</translation>
    </message>
    <message id="qelworkbench-export-json">
        <source></source>
        <translation>JSON for programs…</translation>
    </message>
    <message id="qelworkbench-export-plate">
        <source></source>
        <translation>Plate as CSV…</translation>
    </message>
    <message id="qelworkbench-export-png">
        <source></source>
        <translation>Picture as PNG…</translation>
    </message>
    <message id="qelworkbench-export-svg">
        <source></source>
        <translation>Picture as SVG…</translation>
    </message>
    <message id="qelworkbench-export-tidy">
        <source></source>
        <translation>One line a well as CSV…</translation>
    </message>
    <message id="qelworkbench-export-xlsx">
        <source></source>
        <translation>Spreadsheet (Excel)…</translation>
    </message>
    <message id="qelworkbench-exported">
        <source></source>
        <translation>Saved as %1</translation>
    </message>
    <message id="qelworkbench-fact-driver">
        <source></source>
        <translation>Driver: %1</translation>
    </message>
    <message id="qelworkbench-fact-firmware">
        <source></source>
        <translation>Firmware: %1</translation>
    </message>
    <message id="qelworkbench-fact-location">
        <source></source>
        <translation>Place: %1 (%2)</translation>
    </message>
    <message id="qelworkbench-fact-name">
        <source></source>
        <translation>Name: %1</translation>
    </message>
    <message id="qelworkbench-fact-plugin">
        <source></source>
        <translation>Plugin: %1, version %2, by %3</translation>
    </message>
    <message id="qelworkbench-fact-serial">
        <source></source>
        <translation>Serial: %1</translation>
    </message>
    <message id="qelworkbench-fact-state">
        <source></source>
        <translation>State: %1</translation>
    </message>
    <message id="qelworkbench-feature">
        <source></source>
        <translation>Measure:</translation>
    </message>
    <message id="qelworkbench-feature-absorbance-measurement">
        <source></source>
        <translation>Absorbance</translation>
    </message>
    <message id="qelworkbench-feature-ambient-temperature">
        <source></source>
        <translation>Temperature inside</translation>
    </message>
    <message id="qelworkbench-feature-calibration">
        <source></source>
        <translation>Calibrate</translation>
    </message>
    <message id="qelworkbench-feature-firmware-info">
        <source></source>
        <translation>Firmware version</translation>
    </message>
    <message id="qelworkbench-feature-firmware-update">
        <source></source>
        <translation>Update the firmware</translation>
    </message>
    <message id="qelworkbench-feature-led-bar-effect">
        <source></source>
        <translation>Light effect</translation>
    </message>
    <message id="qelworkbench-feature-luminescence-measurement">
        <source></source>
        <translation>Luminescence</translation>
    </message>
    <message id="qelworkbench-feature-orientation">
        <source></source>
        <translation>Orientation</translation>
    </message>
    <message id="qelworkbench-feature-parts-aligned">
        <source></source>
        <translation>Are the parts aligned?</translation>
    </message>
    <message id="qelworkbench-feature-plate-detection">
        <source></source>
        <translation>Is a plate inserted?</translation>
    </message>
    <message id="qelworkbench-feature-reference-number">
        <source></source>
        <translation>Reference number</translation>
    </message>
    <message id="qelworkbench-folder">
        <source></source>
        <translation>Folder…</translation>
    </message>
    <message id="qelworkbench-held-up">
        <source></source>
        <translation>The driver “%1” holds up the window for %2 s whenever it looks for instruments</translation>
    </message>
    <message id="qelworkbench-history-hint">
        <source></source>
        <translation>Select a measurement to see it, or two, with Ctrl, to compare them.</translation>
    </message>
    <message id="qelworkbench-inspect">
        <source></source>
        <translation>Check again</translation>
    </message>
    <message id="qelworkbench-instrument">
        <source></source>
        <translation>Instrument</translation>
    </message>
    <message id="qelworkbench-instrument-tip">
        <source></source>
        <translation>%1
Serial: %2
%3</translation>
    </message>
    <message id="qelworkbench-instruments">
        <source></source>
        <translation>Instruments</translation>
    </message>
    <message id="qelworkbench-keep-again">
        <source></source>
        <translation>Try again</translation>
    </message>
    <message id="qelworkbench-kept">
        <source></source>
        <translation>Measured and saved in %1</translation>
    </message>
    <message id="qelworkbench-layout">
        <source></source>
        <translation>Layout</translation>
    </message>
    <message id="qelworkbench-layout-concentration">
        <source></source>
        <translation>Concentration:</translation>
    </message>
    <message id="qelworkbench-layout-content">
        <source></source>
        <translation>The layout says “%2” in well %1; known are sample, blank, control, standard, and standard with a number.</translation>
    </message>
    <message id="qelworkbench-layout-csv">
        <source></source>
        <translation>From a CSV file…</translation>
    </message>
    <message id="qelworkbench-layout-last">
        <source></source>
        <translation>As last time</translation>
    </message>
    <message id="qelworkbench-layout-nothing">
        <source></source>
        <translation>Nothing</translation>
    </message>
    <message id="qelworkbench-layout-painting">
        <source></source>
        <translation>Dragging sets: %1 – stop</translation>
    </message>
    <message id="qelworkbench-layout-painting-tip">
        <source></source>
        <translation>The wells that you drag over hold this. Escape stops, too.</translation>
    </message>
    <message id="qelworkbench-layout-shape">
        <source></source>
        <translation>Line %1 of the layout does not fit a plate of %2 × %3 wells: a grid with numbered columns and lettered rows is expected.</translation>
    </message>
    <message id="qelworkbench-layout-standard">
        <source></source>
        <translation>Standard…</translation>
    </message>
    <message id="qelworkbench-legend-not-measured">
        <source></source>
        <translation>⊗ %1 not measured</translation>
    </message>
    <message id="qelworkbench-legend-saturated">
        <source></source>
        <translation>▲ %1 saturated</translation>
    </message>
    <message id="qelworkbench-log">
        <source></source>
        <translation>Messages</translation>
    </message>
    <message id="qelworkbench-menu-file">
        <source></source>
        <translation>&amp;File</translation>
    </message>
    <message id="qelworkbench-menu-language">
        <source></source>
        <translation>&amp;Language</translation>
    </message>
    <message id="qelworkbench-menu-view">
        <source></source>
        <translation>&amp;View</translation>
    </message>
    <message id="qelworkbench-no">
        <source></source>
        <translation>No</translation>
    </message>
    <message id="qelworkbench-no-blank-tip">
        <source></source>
        <translation>Name wells as blank first (“Layout”); a saturated blank has no value.</translation>
    </message>
    <message id="qelworkbench-no-device">
        <source></source>
        <translation>The driver “%1” gives no access to this instrument.</translation>
    </message>
    <message id="qelworkbench-no-drivers-in">
        <source></source>
        <translation>%1: no drivers</translation>
    </message>
    <message id="qelworkbench-no-folder">
        <source></source>
        <translation>The folder “%1” cannot be made.</translation>
    </message>
    <message id="qelworkbench-no-instrument">
        <source></source>
        <translation>No instrument selected</translation>
    </message>
    <message id="qelworkbench-no-instruments">
        <source></source>
        <translation>No instruments found. Connect one and switch it on; it appears here by itself.</translation>
    </message>
    <message id="qelworkbench-no-result">
        <source></source>
        <translation>Insert a plate and press “Start”.
The result appears here.</translation>
    </message>
    <message id="qelworkbench-no-run">
        <source></source>
        <translation>The file “%1” holds no measurement. %2</translation>
    </message>
    <message id="qelworkbench-no-spreadsheet">
        <source></source>
        <translation>The spreadsheet cannot be made: %1.</translation>
    </message>
    <message id="qelworkbench-not-measured">
        <source></source>
        <translation>not measured</translation>
    </message>
    <message id="qelworkbench-not-usable">
        <source></source>
        <translation>cannot be used</translation>
    </message>
    <message id="qelworkbench-open-again">
        <source></source>
        <translation>Connect</translation>
    </message>
    <message id="qelworkbench-option-folder">
        <source></source>
        <translation>Keep results in DIR.</translation>
    </message>
    <message id="qelworkbench-option-help">
        <source></source>
        <translation>Show this help.</translation>
    </message>
    <message id="qelworkbench-option-lang">
        <source></source>
        <translation>Speak German or English.</translation>
    </message>
    <message id="qelworkbench-option-plugins">
        <source></source>
        <translation>Search DIR for drivers, too.</translation>
    </message>
    <message id="qelworkbench-option-scenario">
        <source></source>
        <translation>Open the simulated instruments that FILE describes, for training.</translation>
    </message>
    <message id="qelworkbench-option-version">
        <source></source>
        <translation>Show the version.</translation>
    </message>
    <message id="qelworkbench-other-folder">
        <source></source>
        <translation>Other folder…</translation>
    </message>
    <message id="qelworkbench-pick-file">
        <source></source>
        <translation>Choose…</translation>
    </message>
    <message id="qelworkbench-pick-wells">
        <source></source>
        <translation>Pick…</translation>
    </message>
    <message id="qelworkbench-pick-wells-hint">
        <source></source>
        <translation>Drag over the wells, or use the arrow keys and the space bar.</translation>
    </message>
    <message id="qelworkbench-preset">
        <source></source>
        <translation>Preset:</translation>
    </message>
    <message id="qelworkbench-preset-name">
        <source></source>
        <translation>Name of the preset:</translation>
    </message>
    <message id="qelworkbench-preset-none">
        <source></source>
        <translation>None</translation>
    </message>
    <message id="qelworkbench-preset-save">
        <source></source>
        <translation>Save…</translation>
    </message>
    <message id="qelworkbench-progress">
        <source></source>
        <translation>Progress</translation>
    </message>
    <message id="qelworkbench-read">
        <source></source>
        <translation>Read:</translation>
    </message>
    <message id="qelworkbench-read-firmware">
        <source></source>
        <translation>Read firmware</translation>
    </message>
    <message id="qelworkbench-refuse">
        <source></source>
        <translation>I cannot do that</translation>
    </message>
    <message id="qelworkbench-report">
        <source></source>
        <translation>Save a report for support…</translation>
    </message>
    <message id="qelworkbench-run-count">
        <source></source>
        <translation>%1 measurements</translation>
    </message>
    <message id="qelworkbench-run-name">
        <source></source>
        <translation>Name (may be empty):</translation>
    </message>
    <message id="qelworkbench-run-name-hint">
        <source></source>
        <translation>Plate 17, second try</translation>
    </message>
    <message id="qelworkbench-run-of">
        <source></source>
        <translation>Run %1 of %2:</translation>
    </message>
    <message id="qelworkbench-saturated">
        <source></source>
        <translation>saturated: this much or more</translation>
    </message>
    <message id="qelworkbench-search">
        <source></source>
        <translation>Search: name, note, instrument, date</translation>
    </message>
    <message id="qelworkbench-searching">
        <source></source>
        <translation>Looking for instruments: asking the drivers %1 …</translation>
    </message>
    <message id="qelworkbench-series">
        <source></source>
        <translation>Repeat</translation>
    </message>
    <message id="qelworkbench-series-count">
        <source></source>
        <translation>Number of runs:</translation>
    </message>
    <message id="qelworkbench-series-interval">
        <source></source>
        <translation>A run every:</translation>
    </message>
    <message id="qelworkbench-series-of">
        <source></source>
        <translation>%1, %2 runs</translation>
    </message>
    <message id="qelworkbench-setting-accelerationX">
        <source></source>
        <translation>To the right, m/s²</translation>
    </message>
    <message id="qelworkbench-setting-accelerationY">
        <source></source>
        <translation>To the back, m/s²</translation>
    </message>
    <message id="qelworkbench-setting-accelerationZ">
        <source></source>
        <translation>Up, m/s²</translation>
    </message>
    <message id="qelworkbench-setting-bootloader">
        <source></source>
        <translation>Boot loader</translation>
    </message>
    <message id="qelworkbench-setting-calibratedAt">
        <source></source>
        <translation>Calibrated</translation>
    </message>
    <message id="qelworkbench-setting-color">
        <source></source>
        <translation>Colour</translation>
    </message>
    <message id="qelworkbench-setting-date">
        <source></source>
        <translation>Date</translation>
    </message>
    <message id="qelworkbench-setting-effect">
        <source></source>
        <translation>Effect</translation>
    </message>
    <message id="qelworkbench-setting-image">
        <source></source>
        <translation>Firmware file</translation>
    </message>
    <message id="qelworkbench-setting-integrationTime">
        <source></source>
        <translation>Time for each well</translation>
    </message>
    <message id="qelworkbench-setting-mode">
        <source></source>
        <translation>Mode</translation>
    </message>
    <message id="qelworkbench-setting-rapidMode">
        <source></source>
        <translation>Rapid mode (noisier)</translation>
    </message>
    <message id="qelworkbench-setting-selectedWells">
        <source></source>
        <translation>Wells</translation>
    </message>
    <message id="qelworkbench-setting-state">
        <source></source>
        <translation>Position</translation>
    </message>
    <message id="qelworkbench-setting-topSide">
        <source></source>
        <translation>Upper side</translation>
    </message>
    <message id="qelworkbench-setting-version">
        <source></source>
        <translation>Version</translation>
    </message>
    <message id="qelworkbench-setting-wavelengths">
        <source></source>
        <translation>Wavelengths (none: all)</translation>
    </message>
    <message id="qelworkbench-sheet-layout">
        <source></source>
        <translation>Layout</translation>
    </message>
    <message id="qelworkbench-sheet-metadata">
        <source></source>
        <translation>About the runs</translation>
    </message>
    <message id="qelworkbench-sheet-plates">
        <source></source>
        <translation>Plates</translation>
    </message>
    <message id="qelworkbench-sheet-values">
        <source></source>
        <translation>Values</translation>
    </message>
    <message id="qelworkbench-start">
        <source></source>
        <translation>Start</translation>
    </message>
    <message id="qelworkbench-state-closed">
        <source></source>
        <translation>Not connected</translation>
    </message>
    <message id="qelworkbench-state-gone">
        <source></source>
        <translation>Unplugged or switched off</translation>
    </message>
    <message id="qelworkbench-state-measuring">
        <source></source>
        <translation>%1, for %2 min</translation>
    </message>
    <message id="qelworkbench-state-needs-user">
        <source></source>
        <translation>Needs you</translation>
    </message>
    <message id="qelworkbench-state-opening">
        <source></source>
        <translation>Connecting…</translation>
    </message>
    <message id="qelworkbench-state-pausing">
        <source></source>
        <translation>%1, next at %2</translation>
    </message>
    <message id="qelworkbench-state-ready">
        <source></source>
        <translation>Ready</translation>
    </message>
    <message id="qelworkbench-state-series">
        <source></source>
        <translation>%1, run %2 of %3</translation>
    </message>
    <message id="qelworkbench-state-stopping">
        <source></source>
        <translation>Stopping…</translation>
    </message>
    <message id="qelworkbench-statistics-all">
        <source></source>
        <translation>All %1 wells:</translation>
    </message>
    <message id="qelworkbench-statistics-deviation">
        <source></source>
        <translation>SD %1 %2</translation>
    </message>
    <message id="qelworkbench-statistics-mean">
        <source></source>
        <translation>mean %1 %2</translation>
    </message>
    <message id="qelworkbench-statistics-selected">
        <source></source>
        <translation>%1 selected wells:</translation>
    </message>
    <message id="qelworkbench-statistics-variation">
        <source></source>
        <translation>CV %1 %</translation>
    </message>
    <message id="qelworkbench-subtract-blanks">
        <source></source>
        <translation>Less blanks</translation>
    </message>
    <message id="qelworkbench-tab-curves">
        <source></source>
        <translation>Curves</translation>
    </message>
    <message id="qelworkbench-tab-difference">
        <source></source>
        <translation>Difference</translation>
    </message>
    <message id="qelworkbench-tab-history">
        <source></source>
        <translation>History</translation>
    </message>
    <message id="qelworkbench-tab-instrument">
        <source></source>
        <translation>Instrument and drivers</translation>
    </message>
    <message id="qelworkbench-tab-measure">
        <source></source>
        <translation>Measure</translation>
    </message>
    <message id="qelworkbench-tab-plate">
        <source></source>
        <translation>Plate</translation>
    </message>
    <message id="qelworkbench-tab-side-by-side">
        <source></source>
        <translation>Side by side</translation>
    </message>
    <message id="qelworkbench-tab-table">
        <source></source>
        <translation>Table</translation>
    </message>
    <message id="qelworkbench-time-format">
        <source></source>
        <translation>yyyy-MM-dd HH:mm:ss</translation>
    </message>
    <message id="qelworkbench-time-left">
        <source></source>
        <translation>About %1 s left</translation>
    </message>
    <message id="qelworkbench-title">
        <source></source>
        <translation>Plate readers</translation>
    </message>
    <message id="qelworkbench-title-simulated">
        <source></source>
        <translation>Plate readers – SIMULATED INSTRUMENTS, for training</translation>
    </message>
    <message id="qelworkbench-try">
        <source></source>
        <translation>Load on trial</translation>
    </message>
    <message id="qelworkbench-try-busy">
        <source></source>
        <translation>Drivers are not tried while an instrument measures: it might be disturbed.</translation>
    </message>
    <message id="qelworkbench-try-tip">
        <source></source>
        <translation>Loads each driver in a process of its own and asks it for its instruments. One that crashes or hangs is found that way, and harms nothing.</translation>
    </message>
    <message id="qelworkbench-trying">
        <source></source>
        <translation>Loading the drivers on trial …</translation>
    </message>
    <message id="qelworkbench-unexpected-argument">
        <source></source>
        <translation>The argument “%1” is not understood; --help shows what is.</translation>
    </message>
    <message id="qelworkbench-unkept">
        <source></source>
        <translation>%1 finished runs are not on disk yet.</translation>
    </message>
    <message id="qelworkbench-usable">
        <source></source>
        <translation>can be used</translation>
    </message>
    <message id="qelworkbench-usable-with-warnings">
        <source></source>
        <translation>can be used, but see below</translation>
    </message>
    <message id="qelworkbench-waiting">
        <source></source>
        <translation>Waiting for the driver “%1” …</translation>
    </message>
    <message id="qelworkbench-well-hint">
        <source></source>
        <translation>Point at a well, or drag over several.</translation>
    </message>
    <message id="qelworkbench-well-no-difference">
        <source></source>
        <translation>%1: not known, saturated on one of the plates</translation>
    </message>
    <message id="qelworkbench-well-not-measured">
        <source></source>
        <translation>%1: not measured</translation>
    </message>
    <message id="qelworkbench-well-saturated">
        <source></source>
        <translation>%1: %2 or more, saturated</translation>
    </message>
    <message id="qelworkbench-well-value">
        <source></source>
        <translation>%1: %2</translation>
    </message>
    <message id="qelworkbench-yes">
        <source></source>
        <translation>Yes</translation>
    </message>
</context>
</TS>
