#include "simhost/random/OddTexts.h"

namespace simhost {

// An unpaired surrogate stands as three bytes.
const std::vector<std::string>& OddTexts() {
    static const auto* const sTexts = new std::vector<std::string>{
        "",
        "C:\\Job\\Brochure.ai",
        "/Job/Brochure.ai",
        "Untitled-1",
        "Optima-Roman",
        "Gr\303\266\303\237e \xE6\x96\x87 \xF0\x9F\x98\x80.ai",
        "C:\\\xED\xA0\x80.ai",
        "\xED\xB0\x80\xED\xA0\x80",
        "Optima\xE3",
        "%s%s%n",
        "\"\\/{}[]",
        std::string(300, 'x'),
        std::string(40'000, 'y'),
    };
    return *sTexts;
}

}  // namespace simhost
