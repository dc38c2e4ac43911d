# What a vendor sets for its own build of the updater, in one place.
set(ZENT_DOWNLOAD_HOST "www.zentware.example" CACHE STRING
    "Web host that serves the service pack (cmdInstall360)")
set(ZENT_BROWSER_DOWNLOAD "http://www.microsoft.com/windows/ie" CACHE STRING
    "Where the browser named by the browser check can be downloaded")
set(ZENT_SUPPORT_CONTACT "Zentware support" CACHE STRING
    "Whom a user turns to; follows the words \"Please contact \"")

set(ZENT_COMPANY "Zentware" CACHE STRING "Who makes the program, as its file says")

configure_file("${PROJECT_SOURCE_DIR}/cmake/Product.h.in"
               "${PROJECT_BINARY_DIR}/generated/driver/run/Product.h" @ONLY)
