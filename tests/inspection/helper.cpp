// A library of a driver's maker.
#if defined(NEEDED_FUNCTION)
int NEEDED_FUNCTION();
int HELPER_FUNCTION()
{
    return NEEDED_FUNCTION();
}
#else
int HELPER_FUNCTION()
{
    return 1;
}
#endif
