// NOLINTBEGIN(readability-identifier-naming): names for C
extern "C" __attribute__((visibility("default"))) unsigned tarvik_script_abi_version() {
    return 0xFFFF;
}
extern "C" __attribute__((visibility("default"))) const void* tarvik_script_module() {
    return nullptr;
}
// NOLINTEND(readability-identifier-naming)
