# Packages for Debian: the library and the front end library, each with what one needs to build with
# it; the tool and the simulator.
# scripts/package configures a build for them.
set(CPACK_GENERATOR DEB)
set(CPACK_OUTPUT_FILE_PREFIX packages)
set(CPACK_PACKAGE_CONTACT "The qeldevices developers <developers@qeldevices.invalid>")
set(CPACK_COMPONENTS_ALL library development frontend frontend_development tools
    documentation)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
# Staged below DESTDIR: the prefix itself says where the drivers go, and must stay what it is.
set(CPACK_SET_DESTDIR ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${PROJECT_BINARY_DIR}/src ${PROJECT_BINARY_DIR}/frontend)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(this_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
set(summary "uniform access to laboratory plate readers")
set(introduction "Applications find, open and drive plate readers through driver plugins, whoever
made the instruments.")
# A field that CPack learns in version 3.31; any version writes this one as it stands.
set(multiarch "\nMulti-Arch: same")

# Packages with drivers or applications for this library get their dependency from this.
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/debian/shlibs @ONLY
    CONTENT "libqeldevices 1 libqeldevices1 (>= @PROJECT_VERSION@)\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libqeldevices1)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION "libs${multiarch}")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/shlibs)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "${summary}
${introduction}
.
This package contains the library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libqeldevices-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION "libdevel${multiarch}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libqeldevices1 (= ${this_version}), qtbase5-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS qeldevices-doc)
# For drivers: the linguist tools compile their catalogues, qelctl tests them.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS
    "cmake, qttools5-dev, qttools5-dev-tools, qeldevices-tools (= ${this_version})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "${summary} (development files)
${introduction}
.
This package contains what one needs to build applications and driver plugins.")

# Version 0 promises nothing to whom was built with another one.
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/debian/frontend/shlibs @ONLY
    CONTENT "libqelfrontend 0 libqelfrontend0 (= @this_version@)\n")
set(CPACK_DEBIAN_FRONTEND_PACKAGE_NAME libqelfrontend0)
set(CPACK_DEBIAN_FRONTEND_PACKAGE_SECTION "libs${multiarch}")
set(CPACK_DEBIAN_FRONTEND_PACKAGE_DEPENDS "libqeldevices1 (= ${this_version})")
set(CPACK_DEBIAN_FRONTEND_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/frontend/shlibs)
set(CPACK_DEBIAN_FRONTEND_DESCRIPTION "${summary} (front end library)
${introduction}
.
This package contains the library that front ends share: one run as one object,
the live list of instruments, plates and their formats.")

set(CPACK_DEBIAN_FRONTEND_DEVELOPMENT_PACKAGE_NAME libqelfrontend-dev)
set(CPACK_DEBIAN_FRONTEND_DEVELOPMENT_PACKAGE_SECTION "libdevel${multiarch}")
set(CPACK_DEBIAN_FRONTEND_DEVELOPMENT_PACKAGE_DEPENDS
    "libqelfrontend0 (= ${this_version}), libqeldevices-dev (= ${this_version})")
set(CPACK_DEBIAN_FRONTEND_DEVELOPMENT_DESCRIPTION "${summary} (front end library, development files)
${introduction}
.
This package contains what one needs to build applications with the front end
library.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME qeldevices-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION science)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS
    "libqeldevices1 (= ${this_version}), libqelfrontend0 (= ${this_version})")
set(CPACK_DEBIAN_TOOLS_DESCRIPTION "${summary} (command line tool)
${introduction}
.
This package contains the command line tool qelctl and the driver of the
simulated plate readers.")

# Where the package was built: see QELDEVICES_PYTHON.
if(TARGET qeldevices_python)
    list(APPEND CPACK_COMPONENTS_ALL python)
    set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-qeldevices)
    set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
    set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "libqelfrontend0 (= ${this_version}), python3-numpy, \
python3 (>= ${QELDEVICES_PYTHON_VERSION}), python3 (<< ${QELDEVICES_PYTHON_NEXT_VERSION})")
    set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS "python3-pandas, qeldevices-tools (= ${this_version})")
    set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS python3-tqdm)
    set(CPACK_DEBIAN_PYTHON_DESCRIPTION "${summary} (Python 3)
${introduction}
.
This package contains the Python package qeldevices, whose results are numpy
arrays and data frames.")
endif()

set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME qeldevices-doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DOCUMENTATION_DESCRIPTION "${summary} (documentation)
${introduction}
.
This package contains the guides for operators, application developers and
driver authors, the schemas of everything that qelctl prints, and examples.")

if(QelDevices_REMOTE)
    list(APPEND CPACK_COMPONENTS_ALL remote)
    set(CPACK_DEBIAN_REMOTE_PACKAGE_NAME qeldevicesd)
    set(CPACK_DEBIAN_REMOTE_PACKAGE_SECTION science)
    set(CPACK_DEBIAN_REMOTE_PACKAGE_DEPENDS "libqeldevices1 (= ${this_version})")
    set(CPACK_DEBIAN_REMOTE_PACKAGE_RECOMMENDS "qeldevices-tools (= ${this_version})")
    set(CPACK_DEBIAN_REMOTE_DESCRIPTION "${summary} (other machines and processes)
${introduction}
.
This package contains the server of instruments for other machines, the driver
that uses such servers, and the driver that runs others in processes of their
own.")
endif()

if(TARGET qelworkbench)
    list(APPEND CPACK_COMPONENTS_ALL workbench)
    set(CPACK_DEBIAN_WORKBENCH_PACKAGE_NAME qelworkbench)
    set(CPACK_DEBIAN_WORKBENCH_PACKAGE_SECTION science)
    set(CPACK_DEBIAN_WORKBENCH_PACKAGE_DEPENDS
        "libqeldevices1 (= ${this_version}), libqelfrontend0 (= ${this_version})")
    set(CPACK_DEBIAN_WORKBENCH_PACKAGE_RECOMMENDS "qeldevices-tools (= ${this_version})")
    set(CPACK_DEBIAN_WORKBENCH_DESCRIPTION "${summary} (desktop front end)
${introduction}
.
This package contains the workbench: it measures plates, shows them, keeps
them and exports them to spreadsheets.")
endif()

include(CPack)
