#pragma once

#include <QTest>

#include <functional>

/// Collects the test classes of one program; its main() (TestRunner.cpp) runs them one after the
/// other. `tst_model CVBATools_test adding` runs one class, or one function of it.
class TestRegistration
{
public:
    using Maker = std::function<QObject *()>;
    TestRegistration(const char *className, Maker maker);
};

/// Stands once in each test file, behind the class.
#define TSM_TEST(Class)                                                                            \
    static const TestRegistration Class##Registration(#Class, [] { return new Class; })
