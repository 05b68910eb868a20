// Test classes register themselves; one main() runs all classes of an executable.
#pragma once

#include <QtTest>

#include <functional>
#include <memory>

using TestFactory = std::function<std::unique_ptr<QObject>()>;

// Adds a test class to this executable's run.
bool registerTest(TestFactory factory);

#define KELDOX_TEST(Class)                                                                         \
    static const bool Class##_registered =                                                         \
        registerTest([]() -> std::unique_ptr<QObject> { return std::make_unique<Class>(); });
