// For programs that draw. Drivers stay where they are: what they keep for themselves is in their
// own variables, which a look for leaks at the end of the process would no longer find in a driver
// that was unloaded. So nothing need be excused, whoever forgot it.

#if defined(__SANITIZE_ADDRESS__)
#define OSTRELLA_KEEP_DRIVERS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define OSTRELLA_KEEP_DRIVERS
#endif
#endif

#if defined(OSTRELLA_KEEP_DRIVERS)
extern "C" int dlclose(void*);

extern "C" int dlclose(void*) {
    return 0;
}
#endif
