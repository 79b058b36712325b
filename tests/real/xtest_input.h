#pragma once

#include <memory>

namespace velmora::test {

// A mouse and a keyboard of the X server that DISPLAY names: what they do reaches whichever window it would
// reach if a person did it.
class CXTestInput
{
  public:
    // Throws std::runtime_error if there is no such server.
    CXTestInput();
    ~CXTestInput();
    CXTestInput(const CXTestInput&) = delete;
    CXTestInput& operator=(const CXTestInput&) = delete;

    // Whether the server has given the window that size, in pixels of the screen: it follows what a program
    // asks for with a delay. False also if the window is gone.
    [[nodiscard]] bool hasSize(unsigned long window, int nWidth, int nHeight);

    // Puts the pointer over a point of a window, in pixels of the screen. False if the window is gone.
    [[nodiscard]] bool moveTo(unsigned long window, int nX, int nY);

    // Buttons as X counts them: 1 left, 2 middle, 3 right, 4 and 5 the wheel away from and toward the hand.
    void button(unsigned uButton, bool bDown);

    // A key by its X name of the key symbol, with Shift where the symbol stands on the second level. False if
    // the keyboard has no such key.
    [[nodiscard]] bool key(unsigned long keySymbol);

    // Control_L, Shift_L, Alt_L and the like, by their key symbols.
    void hold(unsigned long keySymbol, bool bDown);

  private:
    struct CImplementation;
    std::unique_ptr<CImplementation> m_pImplementation;
};

} // namespace velmora::test
