// Begins each message table: its entries become constants in the namespaces msg and fragment, unless who
// includes the table has defined what they are to be. Included by every table, so it has no guard;
// undeclare_messages.h ends it.
#include "foundation/messages.h"

#ifndef KELVASH_MESSAGE
#define KELVASH_DECLARE(name, ...)                   \
    namespace kelvash::msg {                         \
    namespace entries {                              \
    inline constexpr Message name{__VA_ARGS__};      \
    }                                                \
    inline constexpr MessageId name{&entries::name}; \
    }
#define KELVASH_MESSAGE(name, id, text) KELVASH_DECLARE(name, id, #name, text)
#define KELVASH_QUESTION(name, id, text, harm) KELVASH_DECLARE(name, id, #name, text, Harm::harm)
#define KELVASH_PASSWORD(name, id, text) KELVASH_DECLARE(name, id, #name, text, std::nullopt, true)
#define KELVASH_FRAGMENT(name, id, text)             \
    namespace kelvash::fragment {                    \
    inline constexpr Fragment name{id, #name, text}; \
    }
#endif
