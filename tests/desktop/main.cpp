// The desktop host's tests run without a screen unless QT_QPA_PLATFORM says otherwise.
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
