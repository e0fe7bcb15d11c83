# A script of the build, not of its configuration, so that whatever makes the deployment file can be built before it:
#
#   cmake -D DEPLOYMENT=<deployment.json> -D TEMPLATE=<header.in> -D HEADER=<header> -P StillgateDeployment.cmake
#
# Checks the deployment file (docs/deployment.md), writes its values into the header, and <header>.d beside it, the
# header's dependency on that file. A file that isn't there or isn't right ends the build.

cmake_minimum_required(VERSION 3.25)

function(refuse problem)
    message(FATAL_ERROR
        "The application can't be built: ${DEPLOYMENT} ${problem}.\n"
        "That file says which backend the application talks to. './dev build' makes one for a server on this machine; "
        "for another backend write one as docs/deployment.md says, and configure with "
        "-D STILLGATE_DEPLOYMENT=<its path>.")
endfunction()

# The text under a key. What the header can't hold as a literal is no right value for any of them.
function(read_text variable)
    string(JSON type ERROR_VARIABLE missing TYPE "${deployment}" ${ARGN})
    string(JSON text ERROR_VARIABLE missing GET "${deployment}" ${ARGN})
    list(JOIN ARGN "." key)
    if(missing OR NOT type STREQUAL "STRING")
        refuse("has no text \"${key}\"")
    endif()
    if(text MATCHES "[\"\\\\]")
        refuse("has a quotation mark or a backslash in \"${key}\"")
    endif()
    set(${variable} "${text}" PARENT_SCOPE)
endfunction()

if(NOT EXISTS "${DEPLOYMENT}")
    refuse("is missing")
endif()
file(READ "${DEPLOYMENT}" deployment)
string(JSON type ERROR_VARIABLE not_json TYPE "${deployment}")
if(not_json OR NOT type STREQUAL "OBJECT")
    refuse("holds no JSON object")
endif()

read_text(base_url "baseURL")
if(NOT base_url MATCHES "^https://[^/? \t\r\n]+(/[^? \t\r\n]*)?/v1$")
    refuse("has a \"baseURL\" that isn't https://HOST/…/v1, without a slash at its end")
endif()

read_text(web_site_url "webSiteURL")
if(NOT web_site_url MATCHES "^https?://[^/? \t\r\n]+[^ \t\r\n]*$")
    refuse("has a \"webSiteURL\" that is no http or https address")
endif()

string(JSON pin_count ERROR_VARIABLE missing LENGTH "${deployment}" "pins")
string(JSON pins_type ERROR_VARIABLE missing TYPE "${deployment}" "pins")
if(NOT pins_type STREQUAL "ARRAY" OR NOT pin_count EQUAL 2)
    refuse("has no list \"pins\" of exactly two pins")
endif()
foreach(index 0 1)
    read_text(pin_${index} "pins" ${index})
    string(LENGTH "${pin_${index}}" length)
    if(NOT length EQUAL 44 OR NOT pin_${index} MATCHES "^[A-Za-z0-9+/]+=$")
        refuse("has a pin that isn't the base64 form of a SHA-256 digest, 44 characters: \"${pin_${index}}\"")
    endif()
endforeach()
if(pin_0 STREQUAL pin_1)
    refuse("has the same pin twice; the second is that of the spare key")
endif()

set(trust_anchor "")
string(JSON type ERROR_VARIABLE missing TYPE "${deployment}" "trustAnchor")
if(NOT missing)
    read_text(trust_anchor "trustAnchor")
    string(STRIP "${trust_anchor}" trust_anchor)
    if(NOT trust_anchor MATCHES "^-----BEGIN CERTIFICATE-----[A-Za-z0-9+/=\r\n]+-----END CERTIFICATE-----$")
        refuse("has a \"trustAnchor\" that isn't one certificate as PEM text")
    endif()
endif()

configure_file("${TEMPLATE}" "${HEADER}" @ONLY)
file(WRITE "${HEADER}.d" "${HEADER}: ${DEPLOYMENT}\n")
