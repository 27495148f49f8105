set(link pty)
find_package(Qt5 REQUIRED COMPONENTS SerialPort)
set(link_libraries Qt5::SerialPort)
