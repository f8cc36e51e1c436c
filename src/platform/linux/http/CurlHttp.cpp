#include "platform/linux/http/CurlHttp.h"

#include "platform/linux/http/Curl.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <csignal>
#include <ctime>
#include <limits>
#include <memory>
#include <pthread.h>

namespace platform::linux {

namespace {

constexpr long mostRedirections = 10;
constexpr double millisecondsInASecond = 1000;

/// As long as it lives, this thread is not ended by writing to a peer that has gone. The library
/// would otherwise change the handler of the whole process.
class NoPipeSignal {
  public:
    NoPipeSignal() {
        ::sigemptyset(&pipeSignal);
        ::sigaddset(&pipeSignal, SIGPIPE);
        ::pthread_sigmask(SIG_BLOCK, &pipeSignal, &before);
    }
    ~NoPipeSignal() {
        const timespec atOnce{};
        while (::sigtimedwait(&pipeSignal, nullptr, &atOnce) >= 0) {
        }
        ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    NoPipeSignal(const NoPipeSignal&) = delete;
    NoPipeSignal& operator=(const NoPipeSignal&) = delete;

  private:
    sigset_t pipeSignal{};
    sigset_t before{};
};

/// With what no address may hold escaped.
std::string escaped(std::string_view url) {
    static constexpr std::string_view digits = "0123456789ABCDEF";
    static constexpr std::string_view illegal = "\"<>\\^`{|}";
    std::string text;
    for (const char c : url) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > 0x20 && byte < 0x7f && illegal.find(c) == illegal.npos)
            text += c;
        else
            text += {'%', digits[byte >> 4], digits[byte & 0xf]};
    }
    return text;
}

struct Body {
    std::string bytes;
    bool isTooLong = false;
};

/// Takes what has come; anything but its length ends the exchange.
std::size_t take(const char* bytes, std::size_t, std::size_t length, void* place) {
    auto& body = *static_cast<Body*>(place);
    body.isTooLong = length > Http::longestBody - body.bytes.size();
    if (body.isTooLong) return 0;
    body.bytes.append(bytes, length);
    return length;
}

long milliseconds(double seconds) {
    const double exact = std::ceil(seconds * millisecondsInASecond);
    // Zero would be no limit at all.
    return static_cast<long>(std::clamp(exact, 1.0, double{std::numeric_limits<int>::max()}));
}

} // namespace

bool asksNobody(std::string_view url) {
    static constexpr std::string_view reserved = ".invalid";
    const auto scheme = url.find("://");
    if (scheme != url.npos) url.remove_prefix(scheme + 3);
    auto host = url.substr(0, url.find_first_of("/?#"));
    const auto user = host.rfind('@');
    if (scheme == url.npos && user == host.npos) return false; // neither an address nor a mail's
    if (user != host.npos) host.remove_prefix(user + 1);
    host = host.substr(0, host.rfind(':'));
    // The library would take the first word of the path instead.
    if (host.find_first_not_of(" \t\r\n.") == host.npos) return true;
    if (host.ends_with('.')) host.remove_suffix(1);
    return host.size() >= reserved.size() &&
           std::ranges::equal(
               host.substr(host.size() - reserved.size()), reserved,
               [](unsigned char c, char expected) { return std::tolower(c) == expected; });
}

HttpReply CurlHttp::get(const HttpRequest& request) {
    if (asksNobody(request.url)) return {.error = "there is no host, or its name is reserved"};
    const Curl* const curl = Curl::load();
    if (curl == nullptr) {
        log.write("the web cannot be reached without libcurl.so.4; install libcurl4");
        return {.error = "no libcurl"};
    }
    const std::unique_ptr<CURL, decltype(curl->easyCleanup)> handle(curl->easyInit(),
                                                                    curl->easyCleanup);
    if (!handle) return {.error = "no memory"};
    std::unique_ptr<curl_slist, decltype(curl->slistFreeAll)> headers(nullptr, curl->slistFreeAll);
    CURLcode result = CURLE_OK;
    const auto set = [&](CURLoption option, auto value) {
        if (result == CURLE_OK) result = curl->easySetopt(handle.get(), option, value);
    };
    const std::string url = escaped(request.url);
    Body body;
    set(CURLOPT_URL, url.c_str());
    set(CURLOPT_PROTOCOLS_STR, "https");
    set(CURLOPT_REDIR_PROTOCOLS_STR, "https");
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_MAXREDIRS, mostRedirections);
    set(CURLOPT_TIMEOUT_MS, milliseconds(request.timeout));
    set(CURLOPT_NOSIGNAL, 1L);
    // A look-up that is still under way is left behind, or the end would wait for it.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_MAXFILESIZE, static_cast<long>(longestBody));
    set(CURLOPT_WRITEFUNCTION, &take);
    set(CURLOPT_WRITEDATA, static_cast<void*>(&body));
    // The system's own are in a folder of which the library knows besides.
    if (!request.authority.empty()) set(CURLOPT_CAINFO, request.authority.c_str());
    if (request.cachePolicy == reloadIgnoringLocalAndRemoteCacheData) {
        headers.reset(curl->slistAppend(nullptr, "Cache-Control: no-cache"));
        if (!headers || curl->slistAppend(headers.get(), "Pragma: no-cache") == nullptr)
            return {.error = "no memory"};
        set(CURLOPT_HTTPHEADER, headers.get());
    }
    if (result == CURLE_OK) {
        const NoPipeSignal guard;
        result = curl->easyPerform(handle.get());
    }
    if (body.isTooLong) return {.error = "the body is too long"};
    if (result != CURLE_OK) return {.error = curl->easyStrerror(result)};
    return {.body = std::move(body.bytes)};
}

} // namespace platform::linux
