#include "tools/log/Sha256.h"

#include <array>

#include <windows.h>

#include <bcrypt.h>

namespace brisk::logbook {

std::string sha256(std::string_view bytes) {
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    BCRYPT_HASH_HANDLE hash = nullptr;
    std::array<UCHAR, 32> sum{};
    bool isDone = BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0) >= 0 &&
                  BCryptCreateHash(algorithm, &hash, nullptr, 0, nullptr, 0, 0) >= 0;
    while (isDone && !bytes.empty()) {
        constexpr std::size_t kBlock = 1U << 30; // a length is 32 bits wide
        const std::string_view block = bytes.substr(0, kBlock);
        bytes.remove_prefix(block.size());
        // It reads only.
        auto* const begin = reinterpret_cast<UCHAR*>(const_cast<char*>(block.data()));
        isDone = BCryptHashData(hash, begin, static_cast<ULONG>(block.size()), 0) >= 0;
    }
    isDone = isDone && BCryptFinishHash(hash, sum.data(), static_cast<ULONG>(sum.size()), 0) >= 0;
    if (hash) {
        BCryptDestroyHash(hash);
    }
    if (algorithm) {
        BCryptCloseAlgorithmProvider(algorithm, 0);
    }
    std::string text;
    for (const UCHAR byte : sum) {
        constexpr char kDigits[] = "0123456789abcdef";
        text += isDone ? std::string{kDigits[byte >> 4], kDigits[byte & 15]} : "";
    }
    return text;
}

} // namespace brisk::logbook
