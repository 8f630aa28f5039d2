#include "simhost/contract/ContractDay.h"

namespace simhost::contract {

const char* const kContractDay = R"({
  "title": "A working day",
  "files": [{"path": "Job/Logo.pdf", "text": "placed\n"}],
  "host": {"documents": {
    "Brochure": {"path": "${work}\\Job\\Brochure.ai", "frames": [["Garamond-Bold", "Optima-Roman"]],
                 "placed": ["${work}\\Job\\Logo.pdf"]},
    "Poster": {"path": "${work}\\Größe 文字\\Poster.ai", "frames": [["Frutiger-Light"]]},
    "Untitled": {"path": "", "frames": [["Univers-Condensed"]]}
  }},
  "begin": [{"do": "startup", "calls": "any"}],
  "steps": [
    {"do": "tick", "times": 30, "calls": "any"},
    {"do": "check_file", "path": "${work}\\Job\\Brochure.ai", "answer": -1, "calls": "any"},
    {"do": "open", "document": "Brochure", "calls": "any"},
    {"do": "change", "document": "Brochure", "modified": true, "calls": "any"},
    {"do": "save", "document": "Brochure", "calls": "any"},
    {"do": "open", "document": "Poster", "calls": "any"},
    {"do": "new", "document": "Untitled", "calls": "any"},
    {"do": "tick", "times": 30, "calls": "any"},
    {"do": "about_to_close", "document": "Untitled", "calls": "any"},
    {"do": "close", "document": "Untitled", "calls": "any"},
    {"do": "about_to_close", "document": "Poster", "calls": "any"},
    {"do": "close", "document": "Poster", "calls": "any"},
    {"do": "about_to_close", "document": "Brochure", "calls": "any"},
    {"do": "close", "document": "Brochure", "calls": "any"},
    {"do": "about", "calls": "any"}
  ]
})";

}  // namespace simhost::contract
