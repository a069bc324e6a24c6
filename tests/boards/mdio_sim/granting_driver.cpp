// Preloaded behind the simulated driver: one that grants every request, whatever the
// descriptor, and leaves errno alone.
extern "C" __attribute__((visibility("default"))) int ioctl(int, unsigned long, ...) {
    return 0;
}
