// Has its metadata where Qt 6 looks for it.
[[gnu::section(".note.qt.metadata"), gnu::used]] const volatile char metaData[] = "qt6";
