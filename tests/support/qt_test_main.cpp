// main() of tests that need Qt's event loop.
#include <QCoreApplication>
#include <cstdlib>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    setenv("DBUS_FATAL_WARNINGS", "0", 0); // as the programs, which survive a bus that ends
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
