<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name></name>
    <message id="qelfrontend-configuration-type">
        <source></source>
        <translation>A configuration of the type %2 is given where a QVariantHash is needed.</translation>
    </message>
    <message id="qelfrontend-device-ambiguous">
        <source></source>
        <translation>&quot;%1&quot; means more than one instrument; write more of it, or driver/location:%2</translation>
    </message>
    <message id="qelfrontend-device-none">
        <source></source>
        <translation>There is no instrument &quot;%1&quot;: no driver has found any. Check that it is connected and switched on.</translation>
    </message>
    <message id="qelfrontend-device-unknown">
        <source></source>
        <translation>There is no instrument &quot;%1&quot;; these are connected:%2</translation>
    </message>
    <message id="qelfrontend-error-none">
        <source></source>
        <translation>The device is working properly.</translation>
    </message>
    <message id="qelfrontend-error-unknown">
        <source></source>
        <translation>An unknown error occurred.</translation>
    </message>
    <message id="qelfrontend-error-vendor-specific">
        <source></source>
        <translation>The device reported an internal error condition.</translation>
    </message>
    <message id="qelfrontend-error-cant-open">
        <source></source>
        <translation>The device cannot be opened.</translation>
    </message>
    <message id="qelfrontend-error-not-ready">
        <source></source>
        <translation>The device is not ready.</translation>
    </message>
    <message id="qelfrontend-error-timeout">
        <source></source>
        <translation>The device did not respond.</translation>
    </message>
    <message id="qelfrontend-error-cant-write">
        <source></source>
        <translation>The communication with the device is disturbed.</translation>
    </message>
    <message id="qelfrontend-error-checksum-mismatch">
        <source></source>
        <translation>Checksum mismatch in data from the device.</translation>
    </message>
    <message id="qelfrontend-error-invalid-configuration">
        <source></source>
        <translation>The device cannot carry this out with these settings.</translation>
    </message>
    <message id="qelfrontend-error-not-calibrated">
        <source></source>
        <translation>The device is not calibrated.</translation>
    </message>
    <message id="qelfrontend-error-disconnected">
        <source></source>
        <translation>The device has been disconnected.</translation>
    </message>
    <message id="qelfrontend-error-boot-fail">
        <source></source>
        <translation>The bootloader cannot start the firmware.</translation>
    </message>
    <message id="qelfrontend-error-api-too-new">
        <source></source>
        <translation>The device speaks a newer protocol that is not supported.</translation>
    </message>
    <message id="qelfrontend-feature-ambiguous">
        <source></source>
        <translation>&quot;%1&quot; means more than one feature; write one of: %2.</translation>
    </message>
    <message id="qelfrontend-feature-unknown">
        <source></source>
        <translation>There is no feature &quot;%1&quot;; there are: %2.</translation>
    </message>
    <message id="qelfrontend-file-kind">
        <source></source>
        <translation>it is no ordinary file</translation>
    </message>
    <message id="qelfrontend-file-size">
        <source></source>
        <translation>it is larger than %1 bytes</translation>
    </message>
    <message id="qelfrontend-json-duplicate-key">
        <source></source>
        <translation>The object at %1 has the key &quot;%2&quot; twice; remove one of the two.</translation>
    </message>
    <message id="qelfrontend-json-single">
        <source></source>
        <translation>This is no JSON: one value is expected.</translation>
    </message>
    <message id="qelfrontend-json-size">
        <source></source>
        <translation>This JSON has %2 bytes; at most %3 are read.</translation>
    </message>
    <message id="qelfrontend-json-syntax">
        <source></source>
        <translation>This is no JSON: %2, at byte %3.</translation>
    </message>
    <message id="qelfrontend-kind-bool">
        <source></source>
        <translation>true or false</translation>
    </message>
    <message id="qelfrontend-kind-bytes">
        <source></source>
        <translation>Base64, or @FILE</translation>
    </message>
    <message id="qelfrontend-kind-color">
        <source></source>
        <translation>a colour such as #ff8000</translation>
    </message>
    <message id="qelfrontend-kind-flags">
        <source></source>
        <translation>a list of flags</translation>
    </message>
    <message id="qelfrontend-kind-integer">
        <source></source>
        <translation>a whole number</translation>
    </message>
    <message id="qelfrontend-kind-integers">
        <source></source>
        <translation>whole numbers</translation>
    </message>
    <message id="qelfrontend-kind-milliseconds">
        <source></source>
        <translation>a whole number of milliseconds</translation>
    </message>
    <message id="qelfrontend-kind-name">
        <source></source>
        <translation>a name</translation>
    </message>
    <message id="qelfrontend-kind-number">
        <source></source>
        <translation>a number</translation>
    </message>
    <message id="qelfrontend-kind-numbers">
        <source></source>
        <translation>numbers</translation>
    </message>
    <message id="qelfrontend-kind-text">
        <source></source>
        <translation>a text</translation>
    </message>
    <message id="qelfrontend-kind-texts">
        <source></source>
        <translation>texts</translation>
    </message>
    <message id="qelfrontend-kind-unsupported">
        <source></source>
        <translation>a value that cannot be written here</translation>
    </message>
    <message id="qelfrontend-kind-wells">
        <source></source>
        <translation>wells such as A1:B12,C3, or a list of true and false</translation>
    </message>
    <message id="qelfrontend-limit-choices">
        <source></source>
        <translation>, one of: %1</translation>
    </message>
    <message id="qelfrontend-limit-length">
        <source></source>
        <translation>, %1 of them or none</translation>
    </message>
    <message id="qelfrontend-limit-maximum">
        <source></source>
        <translation> up to %1</translation>
    </message>
    <message id="qelfrontend-limit-minimum">
        <source></source>
        <translation> from %1</translation>
    </message>
    <message id="qelfrontend-limit-range">
        <source></source>
        <translation> from %1 to %2</translation>
    </message>
    <message id="qelfrontend-limit-step">
        <source></source>
        <translation> in steps of %1</translation>
    </message>
    <message id="qelfrontend-missing">
        <source></source>
        <translation>The device did not deliver &quot;%1&quot;, which has to be %2; report this to the maker of its driver.</translation>
    </message>
    <message id="qelfrontend-names-count">
        <source></source>
        <translation>The device delivered &quot;%1&quot; with %2 names for %3 choices; report this to the maker of its driver.</translation>
    </message>
    <message id="qelfrontend-not-as-configured">
        <source></source>
        <translation>The device delivered &quot;%1&quot; as %2 and was to measure with %3; report this to the maker of its driver.</translation>
    </message>
    <message id="qelfrontend-not-as-described">
        <source></source>
        <translation>The device delivered &quot;%1&quot; as %2 and describes it as %3; report this to the maker of its driver.</translation>
    </message>
    <message id="qelfrontend-not-selected">
        <source></source>
        <translation>The device delivered &quot;%1&quot;, the value of a well that was not to be measured; report this to the maker of its driver.</translation>
    </message>
    <message id="qelfrontend-not-utc">
        <source></source>
        <translation>The device delivered no valid time in UTC as &quot;%1&quot;; report this to the maker of its driver.</translation>
    </message>
    <message id="qelfrontend-out-of-range">
        <source></source>
        <translation>The device delivered &quot;%1&quot; as %2, which cannot be; report this to the maker of its driver.</translation>
    </message>
    <message id="qelfrontend-plate-impossible">
        <source></source>
        <translation>The device delivered &quot;%1&quot; with a plate of %2 by %3 wells, which cannot be; report this to the maker of its driver.</translation>
    </message>
    <message id="qelfrontend-plate-none">
        <source></source>
        <translation>This result is no plate.</translation>
    </message>
    <message id="qelfrontend-read-count">
        <source></source>
        <translation>The device delivered &quot;%1&quot; with %2 reads of the plate where %3 belong; report this to the maker of its driver.</translation>
    </message>
    <message id="qelfrontend-run-aborted">
        <source></source>
        <translation>The run was aborted by the user.</translation>
    </message>
    <message id="qelfrontend-run-busy">
        <source></source>
        <translation>The device was busy with something else all the time. Try again later.</translation>
    </message>
    <message id="qelfrontend-run-closed">
        <source></source>
        <translation>The device did not open and gave no reason.</translation>
    </message>
    <message id="qelfrontend-run-earlier-error">
        <source></source>
        <translation> An error from before still stands, which may be the reason: %1</translation>
    </message>
    <message id="qelfrontend-run-failed">
        <source></source>
        <translation>The device ended the run without a result and gave no reason.</translation>
    </message>
    <message id="qelfrontend-file-in-use">
        <source></source>
        <translation>another process is writing results to it</translation>
    </message>
    <message id="qelfrontend-document-other">
        <source></source>
        <translation>This is no document of a run that has a result.</translation>
    </message>
    <message id="qelfrontend-document-version">
        <source></source>
        <translation>The document is of version %1, this program reads version %2.</translation>
    </message>
    <message id="qelfrontend-run-gone">
        <source></source>
        <translation>The device was disconnected or closed during the run. Check the connection and start again.</translation>
    </message>
    <message id="qelfrontend-run-no-feature">
        <source></source>
        <translation>This device does not offer %1; it offers: %2.</translation>
    </message>
    <message id="qelfrontend-run-refused">
        <source></source>
        <translation>The device refused to run %1 and gave no reason.</translation>
    </message>
    <message id="qelfrontend-run-stalled">
        <source></source>
        <translation>The run has shown no sign of life for %1 s.</translation>
    </message>
    <message id="qelfrontend-run-timeout">
        <source></source>
        <translation>The run did not end within %1 s and was stopped. Check the device, or allow more time.</translation>
    </message>
    <message id="qelfrontend-setting-digits">
        <source></source>
        <translation>Setting &quot;%1&quot;: so long a number may have lost digits; write it as a text, in quotation marks.</translation>
    </message>
    <message id="qelfrontend-setting-empty">
        <source></source>
        <translation>Setting &quot;%1&quot;: nothing is given where a value belongs; leave the setting out for its default, or write [] for an empty list.</translation>
    </message>
    <message id="qelfrontend-setting-file">
        <source></source>
        <translation>Setting &quot;%1&quot;: cannot read &quot;%2&quot;: %3.</translation>
    </message>
    <message id="qelfrontend-setting-form">
        <source></source>
        <translation>&quot;%1&quot; is not of the form KEY=VALUE.</translation>
    </message>
    <message id="qelfrontend-setting-length">
        <source></source>
        <translation>Setting &quot;%1&quot;: %2 values given, exactly %3 or none needed.</translation>
    </message>
    <message id="qelfrontend-setting-missing">
        <source></source>
        <translation>Setting &quot;%1&quot; is missing; give %2.</translation>
    </message>
    <message id="qelfrontend-setting-none">
        <source></source>
        <translation>There is no setting &quot;%1&quot;; this feature takes none.</translation>
    </message>
    <message id="qelfrontend-setting-type">
        <source></source>
        <translation>Setting &quot;%1&quot;: a value of the type %2 is given where %3 is needed.</translation>
    </message>
    <message id="qelfrontend-setting-unknown">
        <source></source>
        <translation>There is no setting &quot;%1&quot;; there are: %2.</translation>
    </message>
    <message id="qelfrontend-setting-wells">
        <source></source>
        <translation>Setting &quot;%1&quot;: %2</translation>
    </message>
    <message id="qelfrontend-setting-wrong">
        <source></source>
        <translation>Setting &quot;%1&quot;: &quot;%2&quot; is not allowed; it takes %3.</translation>
    </message>
    <message id="qelfrontend-start-no-folder">
        <source></source>
        <translation>There is no folder "%1" to look for driver plugins in.</translation>
    </message>
    <message id="qelfrontend-unexpected">
        <source></source>
        <translation>The device delivered &quot;%1&quot; as %2 where nothing belongs; report this to the maker of its driver.</translation>
    </message>
    <message id="qelfrontend-unknown-type">
        <source></source>
        <translation>The device delivered &quot;%1&quot; as &quot;%2&quot;, which is no type of a setting; report this to the maker of its driver.</translation>
    </message>
    <message id="qelfrontend-value-content">
        <source></source>
        <translation>The value at %1 cannot be read as %2.</translation>
    </message>
    <message id="qelfrontend-value-count">
        <source></source>
        <translation>The values up to %1 are more than %2.</translation>
    </message>
    <message id="qelfrontend-value-depth">
        <source></source>
        <translation>The value at %1 is nested deeper than %2 levels.</translation>
    </message>
    <message id="qelfrontend-value-tag">
        <source></source>
        <translation>The object at %1 has a &quot;$type&quot; and must have a &quot;value&quot; beside it and nothing else.</translation>
    </message>
    <message id="qelfrontend-value-type">
        <source></source>
        <translation>The value at %1 is of the type &quot;%2&quot;, which JSON is not defined for.</translation>
    </message>
    <message id="qelfrontend-value-unicode">
        <source></source>
        <translation>The text at %1 is no valid Unicode.</translation>
    </message>
    <message id="qelfrontend-value-unwritable">
        <source></source>
        <translation>The value at %1 is a %2 that JSON cannot hold without loss.</translation>
    </message>
    <message id="qelfrontend-well-count">
        <source></source>
        <translation>The device delivered &quot;%1&quot; with %2 values for %3 by %4 wells; report this to the maker of its driver.</translation>
    </message>
    <message id="qelfrontend-wells-unknown">
        <source></source>
        <translation>&quot;%1&quot; is no well or range of wells; they go from A1 to %2.</translation>
    </message>
    <message id="qelfrontend-wrong-content">
        <source></source>
        <translation>The device delivered &quot;%1&quot; as &quot;%2&quot; where &quot;%3&quot; belongs; report this to the maker of its driver.</translation>
    </message>
    <message id="qelfrontend-wrong-type">
        <source></source>
        <translation>The device delivered &quot;%1&quot; as %2 where %3 belongs; report this to the maker of its driver.</translation>
    </message>
</context>
</TS>
