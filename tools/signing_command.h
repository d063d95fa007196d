// vhtool sign, verify and trust: signed data files.
#pragma once

#include <string>

namespace tools {

struct SigningOptions {
    // With the key in a file.
    std::string key;
    std::string certificate;
    // With the key in a store or a PFX file.
    std::string specification;
    // Its first line is the password; without it VHTOOL_PASSWORD, or a prompt where one is needed.
    std::string password_file;
};

int SignDataFile(const std::wstring& file, const SigningOptions& options);
// Prints one JSON object. With `expect` the signer has to be the one that is named: a part of the subject, or "|" and
// the digits of a thumbprint.
int VerifyDataFile(const std::wstring& file, const std::wstring* expect);
// Puts the signer of a file that verifies into the user's trust list.
int TrustDataFile(const std::wstring& file);

} // namespace tools
