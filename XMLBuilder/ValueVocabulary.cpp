#include "XMLBuilder/ValueVocabulary.h"

#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

const ValueVocabulary kLegacyValues = {kDottedForm,        Vocabulary::kTypesURI.data(),
                                       u"types:Numerator", u"types:Denominator",
                                       u"types:Major",     u"types:Minor",
                                       u"types:Patch",     u"types:Build",
                                       u"types:Release",   u"types:Year",
                                       u"types:Month",     u"types:Day",
                                       u"types:Hour",      u"types:Minute",
                                       u"types:Second",    u"types:mSec4"};

const ValueVocabulary kSt434Values = {kUrnForm,
                                      Vocabulary::kSt434TypesURI.data(),
                                      u"st377Types:Numerator",
                                      u"st377Types:Denominator",
                                      u"st377Types:Major",
                                      u"st377Types:Minor",
                                      u"st377Types:Patch",
                                      u"st377Types:Build",
                                      u"st377Types:Release",
                                      u"st377Types:Year",
                                      u"st377Types:Month",
                                      u"st377Types:Day",
                                      u"st377Types:Hour",
                                      u"st377Types:Minute",
                                      u"st377Types:Second",
                                      u"st377Types:mSec4"};

}  // namespace Vantor::XMLBuilder
