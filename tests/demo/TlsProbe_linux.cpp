#include "tests/demo/TlsProbe.h"

#include <memory>
#include <openssl/bio.h>
#include <openssl/ssl.h>
#include <string>

namespace orvane::test {

bool speaks(int port, TlsVersion version) {
    const int number = version == TlsVersion::tls11 ? TLS1_1_VERSION : TLS1_2_VERSION;
    const std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context(SSL_CTX_new(TLS_client_method()),
                                                                    &SSL_CTX_free);
    SSL_CTX_set_security_level(context.get(), 0);
    SSL_CTX_set_min_proto_version(context.get(), number);
    SSL_CTX_set_max_proto_version(context.get(), number);
    const std::unique_ptr<BIO, decltype(&BIO_free_all)> connection(BIO_new_ssl_connect(context.get()),
                                                                   &BIO_free_all);
    BIO_set_conn_hostname(connection.get(), ("127.0.0.1:" + std::to_string(port)).c_str());
    SSL* session = nullptr;
    BIO_get_ssl(connection.get(), &session);
    return BIO_do_handshake(connection.get()) == 1 && SSL_version(session) == number;
}

} // namespace orvane::test
