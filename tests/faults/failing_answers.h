// What the Java methods answer when something fails: what the sweeps see against a list of it,
// which the check of the Javadoc reads as well.
#ifndef WAP_TESTS_FAULTS_FAILING_ANSWERS_H
#define WAP_TESTS_FAULTS_FAILING_ANSWERS_H

#include "faults/sweep_cases.h"

namespace wap::test {

/// Takes note of an answer under a fault, and fails the running test when it is a failure that is
/// not on the list of its method.
void ExpectListed(const SweepCase &stCase, const Answer &stAnswer);

/// Takes note that all faults of a case have been gone through.
void NoteSwept(const SweepCase &stCase);

/// Fails the running test for each answer on the list that no fault has led to, of the methods
/// whose cases have all been gone through.
void ExpectAllSeen();

}  // namespace wap::test

#endif
