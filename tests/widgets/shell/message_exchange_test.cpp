#include "host/view_messages.h"
#include "pluginconstants.h"
#include "widgets/shell/designer_view.h"
#include "widgets/shell/message_exchange.h"

#include <QCoreApplication>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace velmora::test {
namespace {

// A plug-in's thread waits for the answer to what it sends; what it posts comes in order, when the window
// looks.
TEST(CMessageExchange, BringsMessagesToTheThreadOfTheWindow)
{
    const std::thread::id window = std::this_thread::get_id();
    std::vector<std::ptrdiff_t> heard;
    CMessageExchange exchange([&](const CWindowMessage& message) {
        EXPECT_EQ(std::this_thread::get_id(), window);
        heard.push_back(message.m_nParam);
        return message.m_nParam * 2;
    });
    EXPECT_EQ(exchange.send(1, 0, 21), 42);

    std::atomic<bool> bDone{false};
    std::thread plugIn([&] {
        for (std::ptrdiff_t n = 0; n < 3; ++n)
            exchange.post(2, 0, n);
        EXPECT_EQ(exchange.send(3, 0, 100), 200);
        bDone = true;
    });
    while (!bDone)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    plugIn.join();
    exchange.drain();
    EXPECT_EQ(heard, (std::vector<std::ptrdiff_t>{21, 100, 0, 1, 2}));

    for (std::size_t i = 0; i <= CMessageQueue::CAPACITY; ++i)
        exchange.post(4, 0, 0);
    EXPECT_EQ(exchange.takeLost(), 1U);
    EXPECT_EQ(exchange.takeLost(), 0U);
}

// A handler that posts again does not keep the window from its other work.
TEST(CMessageExchange, AMessageThatBreedsAnotherWaitsForTheNextLook)
{
    CMessageExchange* pExchange = nullptr;
    std::size_t uHeard = 0;
    CMessageExchange exchange([&](const CWindowMessage&) {
        ++uHeard;
        pExchange->post(1, 0, 0);
        return 0;
    });
    pExchange = &exchange;
    exchange.post(1, 0, 0);
    exchange.drain();
    EXPECT_LE(uHeard, CMessageQueue::CAPACITY);
}

// Those of features that are not there yet are not in the table.
TEST(ViewMessages, TheTableHoldsWhatIsBuilt)
{
    for (const unsigned uMessage :
         {241U,  512U,  2052U, 2065U, 2067U, 2068U, 2069U, 2078U, 2080U, 2081U, 2082U, 2083U, 2085U,
          2090U, 2096U, 2100U, 2102U, 2107U, 2108U, 2109U, 2110U, 4024U, 4025U, 4026U, 4028U, 4030U})
        EXPECT_TRUE(CDesignerView::isMessageKnown(uMessage)) << uMessage;
    for (const unsigned uMessage : {0U, 2048U, 2051U, 2053U, 2079U, 2097U, 2099U, 2103U, 2106U, 4031U, 4032U})
        EXPECT_FALSE(CDesignerView::isMessageKnown(uMessage)) << uMessage;
}

} // namespace
} // namespace velmora::test
