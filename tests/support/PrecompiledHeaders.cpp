// Gives the libraries that hold the tests' precompiled headers something to compile.
namespace LxTest
{
int PrecompiledHeaders();

int PrecompiledHeaders()
{
    return 0;
}
}  // namespace LxTest
