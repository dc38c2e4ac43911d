#pragma once

#include <cstdint>

#include "jet/format/Bytes.h"
#include "jet/format/Layout.h"

/// RC4, with which the header is masked and an encoded database encrypted.
namespace zent::jet {

/// XORs `bytes` with the key stream of `key`, from its start; doing it twice gives the bytes back.
void ApplyRc4(ByteView key, MutableBytes bytes);

/// Encrypts or decrypts page `number` of a database with that key. Page 0 and key 0: does nothing.
void CryptPage(std::uint32_t database_key, PageNumber number, MutableBytes page);

}  // namespace zent::jet
