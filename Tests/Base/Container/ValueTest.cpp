#include "Base/Container/Value.h"

#include "Support/Test.h"

namespace {

using Quern::AString;
using Quern::Value;
using Quern::ValueType;

static_assert(!std::is_constructible_v<Value, AString*>);

class ValueTest : public testing::Test {
protected:
    // Whether exactly that was logged since the last look.
    bool Logged(const std::string& line) { return _console.Take() == std::vector<std::string>{line}; }

    OrvaneTest::CapturedConsole _console;
};

TEST_F(ValueTest, TextsThatLookLikeNumbersAreNumbers) {
    struct Case {
        const char* text;
        ValueType type;
    };
    for (const Case& c : {Case{"123", Quern::IntValue}, Case{"-5", Quern::IntValue}, Case{"1.5", Quern::RealValue},
                          Case{"-.", Quern::RealValue}, Case{"5.", Quern::RealValue}, Case{"-", Quern::StringValue},
                          Case{"", Quern::StringValue}, Case{"1.5.2", Quern::StringValue},
                          Case{"0x10", Quern::StringValue}, Case{"999999999999999999", Quern::IntValue},
                          Case{"1234567890123456789", Quern::StringValue}, Case{"true", Quern::StringValue}})
        EXPECT_EQ(Value(c.text).type(), c.type) << c.text;
    const Value null(static_cast<const char*>(nullptr));
    EXPECT_TRUE(null.isString());
    EXPECT_FALSE(null.isBool());
    EXPECT_FALSE(null.asBool());
    EXPECT_STREQ(null.asCString(), "");
    EXPECT_TRUE(Value("true").isBool() && Value("false").isBool() && Value(true).isBool());
    EXPECT_FALSE(Value("True").isBool() || Value(1).isBool());
}

TEST_F(ValueTest, ConvertsNumbersByTheirBits) {
    EXPECT_EQ(Value(-1LL).asUInt32(), UINT_MAX);
    EXPECT_EQ(Value(0x100000002LL).asInt32(), 2);
    EXPECT_EQ(Value(ULLONG_MAX).asInt64(), -1);
    EXPECT_EQ(Value(-2.9).asInt64(), -2);
    EXPECT_EQ(Value(-2.9).asUInt32(), 0xFFFFFFFEU);
    EXPECT_EQ(Value(4294967298.5).asInt32(), 2);
    EXPECT_EQ(Value(18446744073709549568.0).asUInt64(), 18446744073709549568U);
    EXPECT_EQ(Value(1e300).asUInt64(), ULLONG_MAX);
    EXPECT_EQ(Value(1e300).asInt64(), LLONG_MAX);
    EXPECT_EQ(Value(ULLONG_MAX).asDouble(), 18446744073709551616.0);
    EXPECT_EQ(Value(true).asInt64() + Value(true).asInt32(), 2);
    EXPECT_EQ(Value(true).asFloat(), 1.0);
    EXPECT_TRUE(Value(0.1).asBool() && Value(1LL << 32).asBool() && Value(1ULL << 63).asBool() &&
                Value("true").asBool());
    EXPECT_FALSE(Value("yes").asBool() || Value(0U).asBool() || Value(0.0).asBool());
    EXPECT_STREQ(Value(ULLONG_MAX).asString().c_str(), "-1");
    EXPECT_STREQ(Value(LLONG_MIN).asString().c_str(), "-9223372036854775808");
    EXPECT_STREQ(Value(0.5).asString().c_str(), "0.500000");
    EXPECT_EQ(Value(-1.7976931348623157e308).asString().length(), 317);
    EXPECT_STREQ(Value(false).asString().c_str(), "false");
    EXPECT_STREQ(Value(true).asCString(), "true");
    EXPECT_STREQ(Value().asString().c_str(), "");
    EXPECT_TRUE(_console.Take().empty());
}

TEST_F(ValueTest, SaysWhatItCannotConvert) {
    EXPECT_EQ(Value(7).asUInt64(), 7U);
    EXPECT_TRUE(Logged("Warning Negative integer can not be converted to UInt64"));
    Value object;
    object["a"] = 1;
    for (const Value& value : {Value("text"), Value(Quern::ArrayValue), object}) {
        EXPECT_EQ(value.asInt64(), 0);
        EXPECT_TRUE(Logged("Warning Type is not convertible to Int64"));
        EXPECT_EQ(value.asUInt64(), 0U);
        EXPECT_TRUE(Logged("Warning Type is not convertible to UInt64"));
        EXPECT_EQ(value.asInt32(), 0);
        EXPECT_TRUE(Logged("Warning Type is not convertible to int"));
        EXPECT_EQ(value.asUInt32(), 0U);
        EXPECT_TRUE(Logged("Warning Type is not convertible to uint"));
        EXPECT_EQ(value.asFloat(), 0);
        EXPECT_TRUE(Logged("Error Type is not convertible to double"));
    }
    for (const Value& value : {Value(1), Value(1U), Value(1.5), object}) {
        EXPECT_STREQ(value.asCString(), "");
        EXPECT_TRUE(Logged("Error Type is not convertible to String"));
    }
    EXPECT_STREQ(object.asString().c_str(), "");
    EXPECT_TRUE(Logged("Error Type is not convertible to String"));

    const Value unknown(static_cast<ValueType>(8));
    EXPECT_TRUE(Logged("Error Unsupport type:8"));
    EXPECT_EQ(unknown.asInt32(), 0);
    EXPECT_TRUE(Logged("Error Unsupported type:8"));
    EXPECT_FALSE(unknown == unknown);
    EXPECT_TRUE(Logged("Error Unsupported type:8"));
    EXPECT_FALSE(unknown < unknown);
    EXPECT_TRUE(Logged("Error Unsupported type:8"));
}

TEST_F(ValueTest, GrowsByWriting) {
    Value root;
    root["a"]["b"][3] = "leaf";
    EXPECT_EQ(root["a"]["b"].Size(), 1);
    const Value& reader = root;
    EXPECT_STREQ(reader["a"]["b"][3].asCString(), "leaf");
    EXPECT_EQ(&reader["a"]["x"]["y"], &Value::Null);
    EXPECT_EQ(&reader["a"]["b"][0], &Value::Null);
    EXPECT_EQ(reader["a"].Size(), 1);  // reading made nothing
    {
        std::string name = "temporary";
        root[name.c_str()] = 1;
        name = "overwritten";
    }
    EXPECT_EQ(reader["temporary"].asInt64(), 1);
    root["missing"];
    EXPECT_TRUE(reader["missing"].isNull());
    EXPECT_EQ(reader.Size(), 3);
    EXPECT_EQ(&reader[static_cast<const char*>(nullptr)], &Value::Null);
    EXPECT_TRUE(reader.asBool());
    EXPECT_FALSE(Value(Quern::ObjectValue).asBool());

    Value copy = root;
    copy["a"]["b"][3] = 5;
    EXPECT_STREQ(reader["a"]["b"][3].asCString(), "leaf");
    copy = copy["a"]["b"];  // a part of itself
    EXPECT_EQ(copy[3].asInt64(), 5);
    Value other("text");
    other.swap(copy);
    EXPECT_TRUE(other.isArray());
    EXPECT_STREQ(copy.asCString(), "text");
}

TEST_F(ValueTest, Compares) {
    EXPECT_FALSE(Value(true) == Value(1));
    EXPECT_FALSE(Value(true) < Value(1));
    EXPECT_TRUE(Value(5) < Value(1U));
    EXPECT_FALSE(Value(1) == Value(1U));
    EXPECT_FALSE(Value(1LL << 32) == Value(0));
    EXPECT_FALSE(Value(1LL << 32) < Value(0));
    EXPECT_FALSE(Value(0) < Value(1LL << 32));  // by the low 32 bits
    EXPECT_TRUE(Value(0x80000000LL) < Value(0));
    // To whoever took them for signed integers, the largest would be negative and the fractions equal.
    const std::pair<Value, Value> ordered[] = {{Value(1U), Value(ULLONG_MAX)},
                                               {Value(1ULL), Value(1ULL + (1ULL << 32))},
                                               {Value(0.25), Value(0.5)},
                                               {Value(-0.5), Value(0.25)},
                                               {Value(false), Value(true)}};
    for (const auto& [less, more] : ordered) {
        EXPECT_TRUE(less < more && !(more < less) && !(less < less)) << more.asString().c_str();
        EXPECT_TRUE(less == Value(less) && !(less == more)) << more.asString().c_str();
    }
    EXPECT_TRUE(Value() == Value::Null && !(Value() < Value()));
    const Value null(static_cast<const char*>(nullptr));
    EXPECT_TRUE(null == null);
    EXPECT_TRUE(null < Value(""));
    EXPECT_FALSE(Value("") < null);
    EXPECT_FALSE(null < null);
    EXPECT_FALSE(null == Value("") || Value("") == null);
    EXPECT_TRUE(Value("a") < Value("b") && Value("a") <= Value("a") && Value("b") >= Value("a") &&
                Value("b") > Value("a"));

    Value small;
    small["z"] = 9;
    Value large;
    large["a"] = 1;
    large["b"] = 1;
    EXPECT_TRUE(small < large);
    small["b"] = 2;
    EXPECT_TRUE(large < small);
    small = large;
    EXPECT_TRUE(small == large);
    small["b"] = 1U;
    EXPECT_FALSE(small == large);
    EXPECT_TRUE(large < small);
}

TEST_F(ValueTest, WalksInOrderOfKeys) {
    Value object;
    object["b"] = 2;
    object["12"] = "text";
    object["a"] = 1;
    std::string walked;
    for (auto it = object.begin(); it != object.end(); ++it) {
        walked += std::string(it.memberName()) + "=" + (*it).asString().c_str() + ";";
        EXPECT_EQ(it.index(), -1);
        *it = 7;
    }
    EXPECT_EQ(walked, "12=text;a=1;b=2;");
    EXPECT_EQ(object["b"].asInt64(), 7);
    EXPECT_TRUE(object.begin().key().isInt());  // the name "12"

    Value array;
    array[10] = "x";
    array[-2] = "y";
    const Value& reader = array;
    std::vector<int> indices;
    for (auto it = reader.begin(); it != reader.end(); it++) {
        indices.push_back(it.index());
        EXPECT_STREQ(it.memberName(), "");
        EXPECT_EQ(it.key().asInt64(), it.index());
    }
    EXPECT_EQ(indices, (std::vector<int>{-2, 10}));
    EXPECT_EQ(reader.begin() - reader.end(), 2);
    EXPECT_EQ(reader.end() - reader.begin(), -2);
    EXPECT_EQ(reader.begin() - object.begin(), 0);
    auto last = reader.end();
    EXPECT_EQ((*--last).asString(), "x");
    const auto previous = last--;
    EXPECT_TRUE(last == reader.begin());
    const std::unique_ptr<Quern::ValueConstIterator> twin(last.duplicate());
    EXPECT_TRUE(*twin == last);
    ++*twin;
    EXPECT_TRUE(*twin == previous);
    Quern::ValueIterator writer;
    writer = last;
    EXPECT_EQ(&*writer, &array[-2]);
}

TEST_F(ValueTest, WalksOverNothing) {
    Value number(5);
    for (const Value& element : number)
        FAIL() << element.asString().c_str();
    EXPECT_EQ(number.Size() + Value("text").Size() + Value().Size() + Value(true).Size(), 0);
    auto it = number.begin();
    EXPECT_TRUE(it == Value("text").end());
    EXPECT_EQ(&*++it, &Value::Null);
    EXPECT_TRUE(it.key().isNull());
    EXPECT_EQ(it.index(), 0);
    EXPECT_STREQ(it.memberName(), "");
    Value array(Quern::ArrayValue);
    EXPECT_TRUE(it != array.begin());
    EXPECT_DEATH((void)(it - array.begin()), "Assertion failed: \\(0\\)");
}

TEST(ValueDeathTest, MisuseAsContainerEndsTheProcess) {
    Value array(Quern::ArrayValue);
    const Value text("x");
    EXPECT_DEATH(array["name"], "\\(_type == ObjectValue \\|\\| _type == NullValue\\)");
    EXPECT_DEATH((void)text["name"], "\\(_type == NullValue \\|\\| _type == ObjectValue\\)");
    Value number(1);
    EXPECT_DEATH(number[0], "\\(_type == ArrayValue \\|\\| _type == NullValue\\)");
    EXPECT_DEATH((void)text[0], "\\(_type == NullValue \\|\\| _type == ArrayValue\\)");
}

}  // namespace
