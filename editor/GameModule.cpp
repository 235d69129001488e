#include "GameModule.hpp"

#include <QFile>

namespace tarvik::editor {

namespace abi = script::abi;

GameModule::GameModule(const QString& file) : library_(file) {
    // Everything is bound now, not in the middle of a frame, and to nothing of another generation.
    library_.setLoadHints(QLibrary::ResolveAllSymbolsHint);
}

GameModule::~GameModule() {
    const QString file = library_.fileName();
    if (library_.isLoaded())
        library_.unload();
    QFile::remove(file);
}

std::expected<std::unique_ptr<GameModule>, Error> GameModule::load(const QString& file) {
    std::unique_ptr<GameModule> module(new GameModule(file));
    QLibrary& library = module->library_;
    if (!library.load())
        return makeError("cannot load the behaviours: {}", library.errorString().toStdString());

    const auto version = reinterpret_cast<abi::VersionEntry>(library.resolve(abi::kVersionEntry));
    const auto entry = reinterpret_cast<abi::ModuleEntry>(library.resolve(abi::kModuleEntry));
    if (version == nullptr || entry == nullptr)
        return makeError("{} holds no behaviours: it lacks {}", file.toStdString(),
                         version == nullptr ? abi::kVersionEntry : abi::kModuleEntry);
    if (version() != abi::kVersion) {
        return makeError("the behaviours speak version {} of the script interface, this editor version {}: "
                         "build them again",
                         version(), abi::kVersion);
    }
    module->functions_ = entry();
    return module;
}

} // namespace tarvik::editor
