set(link tcp)
find_package(Qt5 REQUIRED COMPONENTS Network)
set(link_libraries Qt5::Network)
