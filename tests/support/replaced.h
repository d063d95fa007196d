// A late-bound function of the system's replaced while the object lives, or taken away.
#pragma once

namespace vh::test {

template <class Function>
class Replaced {
public:
    explicit Replaced(Function& function) : m_function(function) { function.hide(); }
    Replaced(Function& function, typename Function::pointer replacement) : m_function(function)
    {
        function.replace(replacement);
    }
    Replaced(const Replaced&) = delete;
    Replaced& operator=(const Replaced&) = delete;
    ~Replaced() { m_function.replace(nullptr); }

private:
    Function& m_function;
};

} // namespace vh::test
