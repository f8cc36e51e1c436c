#pragma once

// The checks of its macros call the operations by their names.
#define CURL_DISABLE_TYPECHECK
#include <curl/curl.h>
#undef curl_easy_setopt

namespace platform::linux {

/// The operations of libcurl that the program uses. The library is loaded when it is first needed:
/// with what it brings along it would take longer to load than all the rest of the program.
struct Curl {
    decltype(&curl_global_init) globalInit;
    decltype(&curl_easy_init) easyInit;
    decltype(&curl_easy_cleanup) easyCleanup;
    decltype(&curl_easy_setopt) easySetopt;
    decltype(&curl_easy_perform) easyPerform;
    decltype(&curl_easy_strerror) easyStrerror;
    decltype(&curl_slist_append) slistAppend;
    decltype(&curl_slist_free_all) slistFreeAll;

    /// Null where the library is missing. Any thread; the library is never unloaded.
    static const Curl* load();
};

} // namespace platform::linux
