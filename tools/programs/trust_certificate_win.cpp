// trust_certificate FILE: makes a certificate (binary, DER) one that this machine trusts to sign others.
// Under Wine the machine is the prefix.
#include <windows.h>

#include <wincrypt.h>

#include <cstdio>

#include "platform/file_bytes.h"

int wmain(int count, wchar_t** arguments) {
    if (count != 2) {
        std::fputs("usage: trust_certificate FILE\n", stderr);
        return 2;
    }
    const auto certificate = varnelo::readWholeFile(arguments[1]);
    if (!certificate) {
        std::fprintf(stderr, "trust_certificate: cannot read %ls\n", arguments[1]);
        return 1;
    }
    const HCERTSTORE store =
        CertOpenStore(CERT_STORE_PROV_SYSTEM_W, 0, 0, CERT_SYSTEM_STORE_LOCAL_MACHINE, L"Root");
    const bool added =
        store && CertAddEncodedCertificateToStore(store, X509_ASN_ENCODING, certificate->data(),
                                                  static_cast<DWORD>(certificate->size()),
                                                  CERT_STORE_ADD_REPLACE_EXISTING, nullptr);
    const DWORD error = GetLastError();
    if (store) CertCloseStore(store, 0);
    if (!added) std::fprintf(stderr, "trust_certificate: error %lu\n", error);
    return added ? 0 : 1;
}
