// Going on after an exception of the system, which handlers of C++ do not see: a fault of the processor, one
// that anybody raised, one of a C++ run-time that is not ours.
#pragma once

namespace kzp {

// Calls `body` with `argument`. Answers false when an exception left it. What `body` had called is gone by
// then without its destructors; so is an exception of our own run-time, which `body` had better catch itself.
bool ReturnsNormally(void (*body)(void*), void* argument);

template <class Body>
bool ReturnsNormally(const Body& body) {
    return ReturnsNormally([](void* callable) { (*static_cast<const Body*>(callable))(); },
                           const_cast<Body*>(&body));
}

}  // namespace kzp
