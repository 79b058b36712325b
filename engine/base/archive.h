#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// What loading throws on truncated or impossible data; what() says what was expected and where. No
// memory is taken for a count that the remaining bytes cannot hold.
class CArchiveError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// A flat stream of values without names or alignment, open for storing or for loading. Everything is
// little-endian on every platform.
//
// A text is its length in characters and then the characters, without a terminator: lengths below 255
// take one byte; up to 0xFFFD the byte 0xFF and 16 bits; beyond that 0xFF, 0xFFFF and 32 bits. A text
// that begins with 0xFF, 0xFFFE holds 16-bit characters and is read as UTF-8. A list of texts is its
// count in 16 bits, or 0xFFFF and 32 bits, and then the texts.
//
// Calling the operation of the other direction throws std::logic_error. [main]
class CArchive
{
  public:
    // Open for storing; the bytes are appended to sStore, which must outlive the archive.
    explicit CArchive(std::string& sStore) : m_pStore(&sStore) {}

    // Open for loading; the bytes must outlive the archive.
    explicit CArchive(std::span<const std::byte> data) : m_data(data) {}

    [[nodiscard]] bool isStoring() const { return m_pStore != nullptr; }
    [[nodiscard]] bool isLoading() const { return !isStoring(); }

    void writeInt32(std::int32_t nValue) { writeWord(static_cast<std::uint32_t>(nValue), 4); }
    void writeUInt32(std::uint32_t uValue) { writeWord(uValue, 4); }
    void writeUInt16(std::uint16_t uValue) { writeWord(uValue, 2); }
    void writeFloat32(float fValue);
    void writeFloat64(double dValue);
    void writeBool(bool bValue) { writeWord(bValue ? 1 : 0, 1); }
    void writeString(std::string_view sText);
    void writeStringArray(std::span<const std::string> texts);
    void writeBytes(std::span<const std::byte> bytes); // as they are, without their count

    [[nodiscard]] std::int32_t readInt32() { return static_cast<std::int32_t>(readWord(4)); }
    [[nodiscard]] std::uint32_t readUInt32() { return static_cast<std::uint32_t>(readWord(4)); }
    [[nodiscard]] std::uint16_t readUInt16() { return static_cast<std::uint16_t>(readWord(2)); }
    [[nodiscard]] float readFloat32();
    [[nodiscard]] double readFloat64();
    [[nodiscard]] bool readBool() { return readWord(1) != 0; } // any byte but 0 is true
    [[nodiscard]] std::string readString();
    [[nodiscard]] std::vector<std::string> readStringArray();
    void readBytes(std::span<std::byte> bytes); // as many as the span holds

    // Stores the value, or loads into it: one list of fields then serves both directions.
    void transfer(std::int32_t& nValue);
    void transfer(std::uint32_t& uValue);
    void transfer(std::uint16_t& uValue);
    void transfer(float& fValue);
    void transfer(double& dValue);
    void transfer(bool& bValue);
    void transfer(std::string& sText);
    void transfer(std::vector<std::string>& texts);

    // Loading: how many bytes are left.
    [[nodiscard]] std::size_t remaining() const { return m_data.size() - m_uPosition; }

    // Loading: throws unless uCount records of at least uBytesEach bytes can still follow. What takes
    // memory by a count that was read calls this first. pWhat names the records in the message.
    void checkCount(std::uint64_t uCount, std::size_t uBytesEach, const char* pWhat) const;

  private:
    template <typename Value, typename Write, typename Read>
    void exchange(Value& value, Write write, Read read);
    void writeWord(std::uint64_t uValue, int nBytes);
    [[nodiscard]] std::uint64_t readWord(int nBytes);
    [[nodiscard]] std::span<const std::byte> take(std::uint64_t uBytes);
    [[nodiscard]] std::string readWideCharacters(std::uint32_t uLength);

    std::string* m_pStore = nullptr;
    std::span<const std::byte> m_data;
    std::size_t m_uPosition = 0;
};

} // namespace velmora
