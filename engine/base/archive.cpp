#include "base/archive.h"

#include <bit>
#include <cstring>

namespace velmora {

namespace {

constexpr std::uint32_t LONG_TEXT = 0xFF;        // behind it 16 bits follow
constexpr std::uint32_t WIDE_TEXT = 0xFFFE;      // in those: 16-bit characters, the length comes next
constexpr std::uint32_t VERY_LONG_TEXT = 0xFFFF; // in those: 32 bits follow
constexpr std::uint32_t LONG_LIST = 0xFFFF;
constexpr char32_t REPLACEMENT_CHARACTER = 0xFFFD;

void appendUtf8(std::string& sText, char32_t uCharacter)
{
    const auto append = [&](char32_t uByte) { sText.push_back(static_cast<char>(uByte)); };
    if (uCharacter < 0x80) {
        append(uCharacter);
    } else if (uCharacter < 0x800) {
        append(0xC0 | uCharacter >> 6);
        append(0x80 | (uCharacter & 0x3F));
    } else if (uCharacter < 0x10000) {
        append(0xE0 | uCharacter >> 12);
        append(0x80 | (uCharacter >> 6 & 0x3F));
        append(0x80 | (uCharacter & 0x3F));
    } else {
        append(0xF0 | uCharacter >> 18);
        append(0x80 | (uCharacter >> 12 & 0x3F));
        append(0x80 | (uCharacter >> 6 & 0x3F));
        append(0x80 | (uCharacter & 0x3F));
    }
}

bool isHighSurrogate(char32_t uUnit)
{
    return uUnit >= 0xD800 && uUnit < 0xDC00;
}

bool isLowSurrogate(char32_t uUnit)
{
    return uUnit >= 0xDC00 && uUnit < 0xE000;
}

} // namespace

void CArchive::writeFloat32(float fValue)
{
    writeWord(std::bit_cast<std::uint32_t>(fValue), 4);
}

void CArchive::writeFloat64(double dValue)
{
    writeWord(std::bit_cast<std::uint64_t>(dValue), 8);
}

void CArchive::writeString(std::string_view sText)
{
    if (sText.size() > UINT32_MAX)
        throw CArchiveError("A text of " + std::to_string(sText.size()) +
                            " characters is too long to store.");
    if (sText.size() < LONG_TEXT) {
        writeWord(sText.size(), 1);
    } else {
        writeWord(LONG_TEXT, 1);
        if (sText.size() < WIDE_TEXT) {
            writeWord(sText.size(), 2);
        } else {
            writeWord(VERY_LONG_TEXT, 2);
            writeWord(sText.size(), 4);
        }
    }
    m_pStore->append(sText);
}

void CArchive::writeStringArray(std::span<const std::string> texts)
{
    if (texts.size() > UINT32_MAX)
        throw CArchiveError("A list of " + std::to_string(texts.size()) + " texts is too long to store.");
    if (texts.size() < LONG_LIST) {
        writeWord(texts.size(), 2);
    } else {
        writeWord(LONG_LIST, 2);
        writeWord(texts.size(), 4);
    }
    for (const std::string& sText : texts)
        writeString(sText);
}

float CArchive::readFloat32()
{
    return std::bit_cast<float>(static_cast<std::uint32_t>(readWord(4)));
}

double CArchive::readFloat64()
{
    return std::bit_cast<double>(readWord(8));
}

std::string CArchive::readString()
{
    bool bWide = false;
    for (;;) {
        auto uLength = static_cast<std::uint32_t>(readWord(1));
        if (uLength == LONG_TEXT) {
            uLength = static_cast<std::uint32_t>(readWord(2));
            if (uLength == WIDE_TEXT && !bWide) {
                bWide = true;
                continue;
            }
            if (uLength == VERY_LONG_TEXT)
                uLength = readUInt32();
        }
        if (bWide)
            return readWideCharacters(uLength);
        const auto bytes = take(uLength);
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }
}

std::string CArchive::readWideCharacters(std::uint32_t uLength)
{
    checkCount(uLength, 2, "characters of a text");
    std::string sText;
    while (uLength > 0) {
        char32_t uCharacter = readUInt16();
        --uLength;
        if (isHighSurrogate(uCharacter) && uLength > 0) {
            const auto next = m_data.subspan(m_uPosition, 2);
            const char32_t uLow = std::to_integer<char32_t>(next[0]) | std::to_integer<char32_t>(next[1])
                                                                           << 8;
            if (isLowSurrogate(uLow)) {
                uCharacter = 0x10000 + ((uCharacter - 0xD800) << 10) + (uLow - 0xDC00);
                m_uPosition += 2;
                --uLength;
            }
        }
        if (isHighSurrogate(uCharacter) || isLowSurrogate(uCharacter))
            uCharacter = REPLACEMENT_CHARACTER;
        appendUtf8(sText, uCharacter);
    }
    return sText;
}

std::vector<std::string> CArchive::readStringArray()
{
    std::uint32_t uCount = readUInt16();
    if (uCount == LONG_LIST)
        uCount = readUInt32();
    checkCount(uCount, 1, "texts of a list");
    std::vector<std::string> texts;
    for (; uCount > 0; --uCount)
        texts.push_back(readString());
    return texts;
}

template <typename Value, typename Write, typename Read>
void CArchive::exchange(Value& value, Write write, Read read)
{
    if (isStoring())
        (this->*write)(value);
    else
        value = (this->*read)();
}

void CArchive::transfer(std::int32_t& nValue)
{
    exchange(nValue, &CArchive::writeInt32, &CArchive::readInt32);
}

void CArchive::transfer(std::uint32_t& uValue)
{
    exchange(uValue, &CArchive::writeUInt32, &CArchive::readUInt32);
}

void CArchive::transfer(std::uint16_t& uValue)
{
    exchange(uValue, &CArchive::writeUInt16, &CArchive::readUInt16);
}

void CArchive::transfer(float& fValue)
{
    exchange(fValue, &CArchive::writeFloat32, &CArchive::readFloat32);
}

void CArchive::transfer(double& dValue)
{
    exchange(dValue, &CArchive::writeFloat64, &CArchive::readFloat64);
}

void CArchive::transfer(bool& bValue)
{
    exchange(bValue, &CArchive::writeBool, &CArchive::readBool);
}

void CArchive::transfer(std::string& sText)
{
    exchange(sText, &CArchive::writeString, &CArchive::readString);
}

void CArchive::transfer(std::vector<std::string>& texts)
{
    exchange(texts, &CArchive::writeStringArray, &CArchive::readStringArray);
}

void CArchive::checkCount(std::uint64_t uCount, std::size_t uBytesEach, const char* pWhat) const
{
    if (uCount > remaining() / uBytesEach)
        throw CArchiveError(std::to_string(uCount) + " " + pWhat + " were announced at byte " +
                            std::to_string(m_uPosition) + ", but only " + std::to_string(remaining()) +
                            " bytes follow. The file is damaged.");
}

void CArchive::writeBytes(std::span<const std::byte> bytes)
{
    if (!m_pStore)
        throw std::logic_error("an archive that is open for loading cannot store");
    m_pStore->append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

void CArchive::readBytes(std::span<std::byte> bytes)
{
    const auto taken = take(bytes.size());
    if (!taken.empty())
        std::memcpy(bytes.data(), taken.data(), taken.size());
}

void CArchive::writeWord(std::uint64_t uValue, int nBytes)
{
    if (!m_pStore)
        throw std::logic_error("an archive that is open for loading cannot store");
    char cBytes[sizeof uValue];
    for (int i = 0; i < nBytes; ++i, uValue >>= 8)
        cBytes[i] = static_cast<char>(uValue & 0xFF);
    m_pStore->append(cBytes, static_cast<std::size_t>(nBytes));
}

std::uint64_t CArchive::readWord(int nBytes)
{
    const auto bytes = take(static_cast<std::uint64_t>(nBytes));
    std::uint64_t uValue = 0;
    for (int i = nBytes - 1; i >= 0; --i)
        uValue = uValue << 8 | std::to_integer<std::uint64_t>(bytes[static_cast<std::size_t>(i)]);
    return uValue;
}

std::span<const std::byte> CArchive::take(std::uint64_t uBytes)
{
    if (m_pStore)
        throw std::logic_error("an archive that is open for storing cannot load");
    if (uBytes > remaining())
        throw CArchiveError("The data end too early: " + std::to_string(uBytes) +
                            " bytes were expected at byte " + std::to_string(m_uPosition) + ", but only " +
                            std::to_string(remaining()) + " follow. The file is damaged.");
    const auto bytes = m_data.subspan(m_uPosition, static_cast<std::size_t>(uBytes));
    m_uPosition += bytes.size();
    return bytes;
}

} // namespace velmora
