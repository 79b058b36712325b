#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace velmora::cli {

// Writes JSON text piece by piece. Numbers keep their full precision: 9 digits for floats, 17 for
// doubles; those that are not finite become the strings "nan", "inf" and "-inf". Texts become UTF-8:
// bytes that are not valid in it are read as Latin-1.
//
//   CJsonWriter json;
//   json.beginObject();
//   json.member("rate", 44100);
//   json.key("left");
//   json.array(std::span<const float>(samples));
//   json.endObject();
//   json.text();
class CJsonWriter
{
  public:
    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    void key(std::string_view sKey);

    void value(std::string_view sText);
    void value(const char* pText) { value(std::string_view(pText)); }
    void value(const std::string& sText) { value(std::string_view(sText)); }
    void value(bool bValue);
    void value(float fValue);
    void value(double dValue);
    void value(std::int64_t nValue);
    void value(std::uint64_t uValue);
    void value(int nValue) { value(static_cast<std::int64_t>(nValue)); }
    void value(unsigned uValue) { value(static_cast<std::uint64_t>(uValue)); }
    void null();

    template <class T>
    void member(std::string_view sKey, const T& tValue)
    {
        key(sKey);
        value(tValue);
    }

    template <class T>
    void array(std::span<const T> values)
    {
        beginArray();
        for (const T& tValue : values)
            value(tValue);
        endArray();
    }

    // The text so far, with a line end behind it.
    [[nodiscard]] std::string text() const { return m_sText + "\n"; }

  private:
    void separate();
    template <class T>
    void number(T tValue);

    std::string m_sText;
    bool m_bNeedsComma = false;
};

// sText as valid UTF-8: bytes that are not part of a valid sequence become the character of that
// number (Latin-1).
[[nodiscard]] std::string toUtf8(std::string_view sText);

} // namespace velmora::cli
