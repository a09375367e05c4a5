#pragma once

#include <memory>

// In the place of the system's network: the internet of a machine that has the development service on its loopback and
// perhaps nothing else. It is reachable until it is switched off. Main thread.
class DemoNetwork
{
public:
    DemoNetwork();

    void setReachable(bool reachable);

private:
    struct State;
    class Target;

    std::shared_ptr<State> m_state;
};
