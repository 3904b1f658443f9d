# The Debian package (cpack -G DEB, or scripts/package from a clean build). Its Depends
# are computed, never listed by hand: dpkg-shlibdeps names the packages of the libraries
# the program links, and the QML modules it imports at run time (which nothing links)
# are found with Qt's import scanner and their owners asked of dpkg.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME coinhall)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Quillfern")
set(CPACK_PACKAGE_CONTACT "Quillfern <coinhall@quillfern.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "private bookkeeping for freelancers, musicians and one-person businesses")
# The first line of the package's description is the summary; this is the rest.
set(CPACK_PACKAGE_DESCRIPTION "QFS Coinhall keeps one local money file: accounts, every deposit, expense and
transfer, bills with reminders, the royalty statements on the way, bank CSV
import with duplicate detection and automatic categories, reports by category
with budgets, a dashboard and a month calendar.")
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://quillfern.com")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# Only the program and its desktop files: not the test tools GoogleTest would install.
set(CPACK_COMPONENTS_ALL Unspecified)

find_program(DPKG_QUERY dpkg-query)
find_program(QTPATHS qtpaths6 qtpaths)
if(DPKG_QUERY AND QTPATHS)
    execute_process(COMMAND ${QTPATHS} --query QT_INSTALL_QML OUTPUT_VARIABLE qt_qml OUTPUT_STRIP_TRAILING_WHITESPACE)
    execute_process(COMMAND ${QTPATHS} --query QT_INSTALL_LIBEXECS OUTPUT_VARIABLE qt_libexec
                    OUTPUT_STRIP_TRAILING_WHITESPACE)
    execute_process(COMMAND ${qt_libexec}/qmlimportscanner -rootPath ${PROJECT_SOURCE_DIR}/qml -importPath ${qt_qml}
                    OUTPUT_VARIABLE imports ERROR_QUIET)
    string(REGEX MATCHALL "\"path\": \"[^\"]+\"" paths "${imports}")
    set(qml_packages)
    foreach(entry IN LISTS paths)
        string(REGEX REPLACE "\"path\": \"([^\"]+)\"" "\\1" path "${entry}")
        execute_process(COMMAND ${DPKG_QUERY} -S ${path}/qmldir OUTPUT_VARIABLE owner ERROR_QUIET)
        string(REGEX REPLACE ":.*" "" owner "${owner}")
        string(REGEX REPLACE ":[a-z0-9]+$" "" owner "${owner}")
        if(owner)
            list(APPEND qml_packages ${owner})
        endif()
    endforeach()
    list(REMOVE_DUPLICATES qml_packages)
    list(SORT qml_packages)
    list(JOIN qml_packages ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
endif()

include(CPack)
