extern "C" __attribute__((visibility("default"))) unsigned tarvik_script_abi_version() {
    return 0xFFFF;
}
extern "C" __attribute__((visibility("default"))) const void* tarvik_script_module() {
    return nullptr;
}
