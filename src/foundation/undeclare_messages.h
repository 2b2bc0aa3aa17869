// Ends each message table: see declare_messages.h.
#ifdef KELVASH_DECLARE
#undef KELVASH_MESSAGE
#undef KELVASH_QUESTION
#undef KELVASH_PASSWORD
#undef KELVASH_FRAGMENT
#undef KELVASH_DECLARE
#endif
