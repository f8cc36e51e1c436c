# Writes a file for each of the PRODUCTS into FOLDER, by which the session bus starts the command of that
# name in PROGRAMS.
foreach(product IN LISTS PRODUCTS)
    set(identifier com.tamberlo.${product})
    # Between single quotes as a shell reads them, after the backslashes that the file is read by.
    string(REPLACE "\\" "\\\\" command "${PROGRAMS}/${product}")
    string(REPLACE "'" "'\"'\"'" command "${command}")
    configure_file(${CMAKE_CURRENT_LIST_DIR}/product.service.in ${FOLDER}/${identifier}.service @ONLY)
endforeach()
