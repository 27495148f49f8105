# The instrument is played by connection.cpp; name here what the real connection needs.
set(link_libraries "")
