// Calling 10,000 behaviours of a module against 10,000 virtual calls within the program; compiling a
// behaviour as the editor writes it against the same file with nothing but the two standard headers it uses.
#include "BehaviourSet.hpp"
#include "Compare.hpp"
#include "Program.hpp"

#include <tarvik/app/ScriptBuilder.hpp>

#include <QFile>
#include <QTemporaryDir>

#include <memory>
#include <random>
#include <vector>

namespace tarvik::bench {
namespace {

constexpr std::size_t kBehaviours = 10'000;
constexpr int kFrames = 50;
constexpr float kFrame = 0.016F;

struct Updated {
    virtual ~Updated() = default;
    virtual void update(float dt) = 0;
};

struct Clock1 final : Updated {
    void update(float dt) override { time += dt; }
    float time = 0.0F;
};

struct Clock2 final : Updated {
    void update(float dt) override { time -= dt; }
    float time = 0.0F;
};

// Of two classes in no order, so that no call is known before it is made.
std::vector<std::unique_ptr<Updated>> makeObjects() {
    std::mt19937 random(1);
    std::vector<std::unique_ptr<Updated>> objects;
    for (std::size_t i = 0; i < kBehaviours; ++i) {
        if (random() % 2 == 0)
            objects.push_back(std::make_unique<Clock1>());
        else
            objects.push_back(std::make_unique<Clock2>());
    }
    return objects;
}

Scene makeScene() {
    std::mt19937 random(1);
    Scene scene("Clocks");
    for (std::size_t i = 0; i < kBehaviours; ++i) {
        Entity entity;
        entity.behaviour = random() % 2 == 0 ? "Clock1" : "Clock2";
        scene.add(std::move(entity));
    }
    return scene;
}

void update(benchmark::State& state) {
    const QTemporaryDir folder;
    const QString copy = folder.filePath("game.so");
    QFile::copy(TARVIK_CLOCKS, copy);
    auto module = editor::GameModule::load(copy);
    if (!module) {
        state.SkipWithError(module.error().message.c_str());
        return;
    }
    editor::GameWorld world(makeScene());
    editor::BehaviourSet behaviours(*std::move(module), world);
    const auto objects = makeObjects();
    const auto timed = [](auto frame) {
        const auto start = Clock::now();
        for (int i = 0; i < kFrames; ++i)
            frame();
        return nanoseconds(Clock::now() - start) / (kFrames * kBehaviours);
    };
    compare(state, 40, 3.0,
            inTurn([&] { return timed([&] { behaviours.update(kFrame); }); },
                   [&] {
                       return timed([&] {
                           for (const auto& object : objects) {
                               object->update(kFrame);
                               benchmark::ClobberMemory();
                           }
                       });
                   }));
}
BENCHMARK(update)->Name("behaviour update across the module / virtual call, 10,000");

double compileTime(const QString& source) {
    const auto start = Clock::now();
    QProcess compiler;
    compiler.start(TARVIK_COMPILER, {"-std=c++20", "-O2", "-g", "-fPIC", "-Wall", "-fvisibility=hidden", "-I",
                                     TARVIK_SDK, "-c", source, "-o", source + ".o"});
    if (!compiler.waitForFinished() || compiler.exitCode() != 0)
        throw std::runtime_error(compiler.readAllStandardError().toStdString());
    return nanoseconds(Clock::now() - start);
}

void write(const QString& path, const QByteArray& text) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error(path.toStdString());
    file.write(text);
}

void compile(benchmark::State& state) {
    try {
        const QTemporaryDir folder;
        app::ScriptBuilder builder(folder.path());
        QString error;
        if (!builder.createBehaviour("Spinner", &error))
            throw std::runtime_error(error.toStdString());
        const QString spinner = builder.scriptsDir() + "/Spinner.cpp";
        const QString plain = folder.filePath("plain.cpp");
        write(plain, R"(#include <cmath>
#include <string>
struct Vec3 { float x = 0, y = 0, z = 0; };
struct Behaviour {
    virtual ~Behaviour() = default;
    virtual void start() {}
    virtual void update(float) {}
    Vec3 position() const;
    void setPosition(Vec3);
    std::string name() const;
    void log(const std::string&) const;
};
class Spinner : public Behaviour {
public:
    void start() override {
        origin_ = position();
        log("Spinner started on " + name());
    }
    void update(float dt) override {
        elapsed_ += dt;
        setPosition({origin_.x, origin_.y + std::sin(elapsed_ * 2.0f) * 0.25f, origin_.z});
    }
private:
    Vec3 origin_;
    float elapsed_ = 0.0f;
};
Behaviour* make() { return new Spinner; }
)");
        compare(state, 15, 1.5,
                inTurn([&] { return compileTime(spinner); }, [&] { return compileTime(plain); }));
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
    }
}
BENCHMARK(compile)->Name("compiling a new behaviour / the same without the SDK");

} // namespace
} // namespace tarvik::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    tarvik::bench::run(argc, argv);
}
