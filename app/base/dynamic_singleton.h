// The program's singletons: made on first use, destroyed in one place, in a fixed order.
#pragma once

#include <utility>

/// One process-wide instance of T.
/// No lock guards the creation: instances that other threads use are created on the interface
/// thread before those threads start. An instance that nobody destroys lives to the very end:
/// at exit there is no order in which it could go safely.
template <typename T>
class dynamic_singleton
{
public:
    /// The instance, created by the first call.
    static T& inst()
    {
        if (!s_instance)
            s_instance = new T;
        return *s_instance;
    }

    /// Whether an instance exists; never creates one.
    [[nodiscard]] static bool exists() { return s_instance != nullptr; }

    /// Deletes the instance, if there is one; a later inst() would make a new one.
    static void destroy() { delete std::exchange(s_instance, nullptr); }

private:
    inline static T* s_instance = nullptr;
};
