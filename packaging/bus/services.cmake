# Writes a file for each of the PRODUCTS into FOLDER, by which the session bus starts the command of that
# name in PROGRAMS.
foreach(product IN LISTS PRODUCTS)
    set(identifier com.tamberlo.${product})
    # As a shell would read it.
    string(REPLACE "'" "'\\''" command "${PROGRAMS}/${product}")
    configure_file(${CMAKE_CURRENT_LIST_DIR}/product.service.in ${FOLDER}/${identifier}.service @ONLY)
endforeach()
