# What changes with a release.
set(TESSEL_VERSION 0.2.0)
set(TESSEL_RELEASE_DATE 2026-11-25)

# The project has no addresses yet: these lead nowhere.
set(TESSEL_HOMEPAGE https://velmora-tessel.invalid)
set(TESSEL_ISSUES https://velmora-tessel.invalid/issues)
set(SECURITY_CONTACT security@velmora-tessel.invalid)
