#include "app/frmAbout.h"

#include "Version.h"

void frmAbout::Form_Load() {
    lblAbout.Caption(
        "Kerno Tools " + std::to_string(KTOOLS_VERSION_MAJOR) + "." + std::to_string(KTOOLS_VERSION_MINOR) +
        "  Build " + std::to_string(KTOOLS_VERSION_REVISION) +
        "\r\nAnd lastly, please enjoy!"
        "\r\nIf you found any bugs, or have any suggestions, please feel free to inform me in the "
        "forums"
        "\r\nThe author of this software will not be liable to any loss of data or damage on your "
        "computer because of this software. Use it at your own risk"
        "\r\nPlease backup your data before attempting to use this program.");
}
