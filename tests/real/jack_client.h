#pragma once

#include <memory>
#include <span>
#include <string>

namespace velmora::test {

// A client of the running JACK server. Its ports are marked physical and terminal, so that PortAudio lists
// the client as a device under its name. Derived classes move the samples.
class CJackClient
{
  public:
    CJackClient(const CJackClient&) = delete;
    CJackClient& operator=(const CJackClient&) = delete;

    // Runs the server as fast as it can, or again in real time. Only while a stream runs: PortAudio cannot
    // start one otherwise, and a client that leaves meanwhile holds up the server.
    void freewheel(bool bOn);

    // The server's buffers that were late since this client joined.
    [[nodiscard]] int serverXruns() const;

  protected:
    enum class EDirection
    {
        records, // other clients play into it
        plays    // other clients hear it
    };

    // Throws std::runtime_error if there is no server.
    CJackClient(const std::string& sName, EDirection eDirection, int nChannels);
    virtual ~CJackClient();

    // Begins and ends the calls of process(); to be called by the derived class's constructor and destructor.
    void activate();
    void deactivate();

    // One period, a span for each channel. [audio]
    virtual void process(std::span<const std::span<float>> channels) = 0;

    [[nodiscard]] int channels() const { return m_nChannels; }

  private:
    struct CImplementation;
    static int processCallback(unsigned uFrames, void* pUser);

    std::unique_ptr<CImplementation> m_pImplementation;
    EDirection m_eDirection;
    int m_nChannels;
};

} // namespace velmora::test
