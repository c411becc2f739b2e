// The request of a login form: four texts of a definition, then the form.
#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "Fuzz.h"
#include "scan/LoginRequest.h"
#include "scan/clsPageScanner.h"

void mvfuzz::fuzzOne(std::string_view input) {
  std::vector<mv::LoginField> fields(4);
  fields[0].name = "form";
  fields[0].searchString = takePart(input);
  fields[0].value = "login.example/enter";
  for (std::size_t i = 1; i < fields.size(); ++i) {
    fields[i].name = "field " + std::to_string(i);
    fields[i].parameter = "p" + std::to_string(i);
    fields[i].searchString = takePart(input);
    fields[i].suppliedByUser = i == 2;
    fields[i].value = "secret & more";
  }

  mv::clsPageScanner page;
  page.setHtml(std::string(input));
  page.getForm();
  const mv::LoginRequest request(fields, page.Form, page.FormAsFetched);
  if (request.outcome() != mv::LoginRequest::Outcome::Ready) return;
  require(request.address().starts_with("login.example/enter?"), "the request goes to the definition's address");
  require(std::all_of(request.address().begin(), request.address().end(),
                      [](unsigned char c) { return c > 0x20 && c < 0x7f; }),
          "parameters are encoded");
  require(std::count(request.address().begin(), request.address().end(), '&') == 2, "a value adds no parameter");
  require(request.shownAddress().find("secret") == std::string::npos, "what is shown holds no value");
}
