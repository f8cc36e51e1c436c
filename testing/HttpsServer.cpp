#include "testing/HttpsServer.h"

#include <cstdlib>
#include <stdexcept>

namespace support {

namespace {

Environment plainEnvironment() {
    const char* path = std::getenv("PATH");
    return {{"PATH", path == nullptr ? "/usr/bin:/bin" : path}};
}

} // namespace

TestAuthority::TestAuthority(const Options& options) {
    folder.write("extensions", "subjectAltName=DNS:" + options.name + "\n");
    const std::vector<std::string> key{"-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                                       "-nodes"};
    std::vector<std::string> authority{"req",     "-x509",
                                       "-subj",   "/CN=Authority of a test",
                                       "-keyout", folder.path("authority.key"),
                                       "-out",    file(),
                                       "-days",   "2"};
    authority.insert(authority.end(), key.begin(), key.end());
    openssl(authority);
    std::vector<std::string> request{"req",       "-subj", "/CN=" + options.name,     "-keyout",
                                     this->key(), "-out",  folder.path("request.pem")};
    request.insert(request.end(), key.begin(), key.end());
    openssl(request);
    sign(options.hasExpired ? "20010101000000Z" : "20490101000000Z");
}

// By the one command that every release lets choose an end in the past.
void TestAuthority::sign(const std::string& until) const {
    folder.write("authority.conf", "[ca]\ndefault_ca = own\n[own]\ndatabase = " +
                                       folder.path("index") + "\nnew_certs_dir = " + folder.path() +
                                       "\nrand_serial = yes\ndefault_md = sha256\n"
                                       "policy = any\n[any]\ncommonName = supplied\n");
    folder.write("index", "");
    openssl({"ca", "-batch", "-notext", "-config", folder.path("authority.conf"), "-in",
             folder.path("request.pem"), "-cert", file(), "-keyfile", folder.path("authority.key"),
             "-extfile", folder.path("extensions"), "-startdate", "20000101000000Z", "-enddate",
             until, "-out", certificate()});
}

void TestAuthority::openssl(const std::vector<std::string>& arguments) const {
    std::vector<std::string> command{"openssl"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    ChildProcess process({.command = command, .environment = plainEnvironment()});
    if (process.wait() != 0) throw std::runtime_error("openssl: " + process.errors());
}

HttpsServer::HttpsServer(const TestAuthority& authority, const std::string& behaviour,
                         const std::string& body) {
    setBody(body);
    process = std::make_unique<ChildProcess>(
        ChildProcess::Start{.command = {HTTPS_SERVER, authority.certificate(), authority.key(),
                                        behaviour, folder.path("body")},
                            .environment = plainEnvironment()});
    if (!process->waitForText("port ") || !process->waitForText("\n"))
        throw std::runtime_error("the server did not start: " + process->errors());
    const std::string said = process->output();
    port = said.substr(5, said.find('\n') - 5);
}

} // namespace support
