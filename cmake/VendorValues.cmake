# What a vendor sets for its own build; the defaults are reserved names that never resolve.
set(ORVANE_API_HOST "api.kestrix.invalid" CACHE STRING "Host of the file description and of crash reports")
set(ORVANE_DOWNLOAD_SERVER "downloads.kestrix.invalid" CACHE STRING "Download host, as texts name it")
set(ORVANE_SECOND_SERVER "www.kestrix.invalid" CACHE STRING "Second vendor host, as texts name it")
set(ORVANE_API_SERVERS "*.kestrix.invalid" CACHE STRING "Wildcard covering the API hosts, as texts name it")
set(ORVANE_WEB_SITE "https://www.kestrix.invalid" CACHE STRING "The vendor's web site, with its scheme")
set(ORVANE_DOMAIN "kestrix.invalid" CACHE STRING "The vendor's domain")
set(ORVANE_PRODUCT_WEB_DOMAIN "varlen.kestrix.invalid" CACHE STRING "The product's web domain")

configure_file("${CMAKE_CURRENT_LIST_DIR}/../src/config/VendorValues.h.in" generated/config/VendorValues.h @ONLY)
