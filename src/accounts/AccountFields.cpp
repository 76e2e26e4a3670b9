#include "accounts/AccountFields.h"

namespace accounts {

const char* FieldName(Field field) {
    constexpr std::array kNames{"ID", "Account name", "Password", "Sex", "E-mail"};
    return kNames[Index(field)];
}

std::string FieldText(Field field, const std::string& text) {
    if (field != Field::Sex || (text != "0" && text != "1"))
        return text;
    return text == "0" ? "Female" : "Male";
}

} // namespace accounts
