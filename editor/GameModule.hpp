#pragma once

#include <tarvik/ScriptAbi.hpp>
#include <tarvik/core/Error.hpp>

#include <QLibrary>
#include <QString>

#include <expected>
#include <memory>

namespace tarvik::editor {

// A game's behaviours as code in this process. The code goes with the object: whatever came from it goes
// before.
class GameModule final {
public:
    // file is this module's own, and is deleted with it, or when it cannot be used.
    [[nodiscard]] static std::expected<std::unique_ptr<GameModule>, Error> load(const QString& file);
    GameModule(const GameModule&) = delete;
    GameModule& operator=(const GameModule&) = delete;
    ~GameModule();

    const script::abi::Module* operator->() const { return functions_; }

private:
    explicit GameModule(const QString& file);

    QLibrary library_;
    const script::abi::Module* functions_ = nullptr;
};

} // namespace tarvik::editor
